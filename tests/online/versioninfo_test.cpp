#include "online/version/autocheck.h"
#include "online/version/versioninfo.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "tests/online/recordedweb.h"
#include "tests/support/fakeforms.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"

#include <gtest/gtest.h>

namespace
{

using online::VersionInfoForm;
using Log = std::vector<std::string>;

constexpr const char *kTools = "https://quenlin.example/VersionInfo.txt";
constexpr const char *kDatabase = "https://quenlin.example/DBVersionInfo.txt";
constexpr std::string_view kSame = "1.6.6:2004\r\nQuenlin 1.6.9\r\n";
constexpr std::string_view kNewer =
    "1.6.5:2003\r\n1.6.6:2004\r\nQuenlin 1.7.0\r\nDravicolt 1.2\r\nc 3\r\nd 4\r\ne 5\r\nf 6\r\ng 7";

// The shipped catalogue, a web port that answers on demand, windows that only record that they are
// shown.
struct VersionInfo : tests::LibraryFixture {
    tests::MemorySettings settings;
    tests::RecordedWeb web;
    tests::FakeForms forms;
    Log shown; // names of the windows that were shown, each modally

    // Expects one modal window; `act` runs while it is shown.
    void ExpectWindow(std::function<void()> act = {})
    {
        forms.scripts.push_back([this, act](const ui::Form &form) {
            shown.push_back(form.name);
            if (act)
                act();
        });
    }
};

struct Check : VersionInfoForm {
    Check() : VersionInfoForm({})
    {
        NoNewerVersion = [this] { log.emplace_back("none"); };
        NewerVersion = [this] { log.emplace_back("newer"); };
    }
    // The delay passes, then the web answers.
    void Answer(tests::RecordedWeb &web, const std::optional<std::string> &bytes)
    {
        Delayer.Fire();
        web.Answer(bytes);
    }
    Log log;
};

TEST_F(VersionInfo, WaitsWithItsWindowSmall)
{
    Check check;
    check.CheckAppsVersions();
    EXPECT_EQ(check.Version, "1.6.6");
    EXPECT_EQ(check.VersionCheck, "VersionInfo.txt");
    EXPECT_TRUE(check.firstStage);
    EXPECT_TRUE(check.Delayer.Enabled());
    EXPECT_EQ(check.WebVrChk1.version, "1.6.9");
    EXPECT_EQ(check.Status.Caption(), "Trying to find an active connection to Internet...");
    EXPECT_EQ(check.size.height, 2200 - 690);
    EXPECT_FALSE(check.Frame[0].Visible());
    EXPECT_FALSE(check.Frame[1].Visible());
    EXPECT_TRUE(check.Frame[2].Visible());
    EXPECT_FALSE(check.cmdAceptar.Visible());
    EXPECT_FALSE(check.frmWhatsNew.Visible());
    EXPECT_EQ(web.addresses, Log{}); // it starts a moment later
    check.Delayer.Fire();
    EXPECT_FALSE(check.Delayer.Enabled());
    EXPECT_EQ(web.addresses, Log{kTools});
}

TEST_F(VersionInfo, OnlyTheLabelsOfTheFirstFourToolsAreTranslated)
{
    Check check;
    ui::LoadForm(check, [](const ui::Caption &row) { return "<" + std::string(row.key) + ">"; });
    EXPECT_EQ(check.Title(), "<VersionInfoCaption>");
    EXPECT_EQ(check.frmWhatsNew.Caption(), "<SeeWhatsNew>");
    EXPECT_EQ(check.lblDB[0].Caption(), "<TheDatabasesDateYouAreUsingIs>");
    EXPECT_EQ(check.lblDB[1].Caption(), "<LastDatabaseAvailableIsFrom>");
    for (std::size_t tool = 0; tool < check.lblYouUsing.size(); ++tool) {
        EXPECT_EQ(check.lblYouUsing[tool].Caption(),
                  tool < 4 ? "<TheVersionYouAreUsingIs>" : "The version you're using is:");
        EXPECT_EQ(check.lblAvailable[tool].Caption(),
                  tool < 4 ? "<LastVersionAvailableIs>" : "Last version available is:");
    }
}

TEST_F(VersionInfo, NothingNewerLooksAtTheDatabaseNext)
{
    for (const bool showIt : {false, true}) {
        SCOPED_TRACE(showIt);
        Check check;
        check.ShowIt = showIt;
        check.CheckAppsVersions();
        check.Answer(web, std::string(kSame));
        EXPECT_FALSE(check.firstStage);
        EXPECT_TRUE(check.Delayer.Enabled());
        EXPECT_EQ(check.log, Log{});
        check.Answer(web, std::string(kSame));
        EXPECT_EQ(web.addresses.back(), kDatabase);
        EXPECT_EQ(check.Status.Caption(), "No newer version available.");
        EXPECT_EQ(check.cmdAceptar.Top(), 700);
        EXPECT_TRUE(check.cmdAceptar.Visible());
        EXPECT_EQ(check.size.height, 1800 - 690);
        EXPECT_EQ(check.log, showIt ? Log{} : Log{"none"}); // a user who asked gets no event
        EXPECT_EQ(shown, Log{});
    }
}

TEST_F(VersionInfo, ANewerToolIsShown)
{
    Check check;
    check.ShowIt = true;
    check.CheckAppsVersions();
    ExpectWindow();
    check.Answer(web, std::string(kNewer));
    EXPECT_EQ(shown, Log{"frmVersionInfo"});
    EXPECT_EQ(check.log, Log{"none"});
    EXPECT_EQ(check.Status.Caption(), "A newer version is available.");
    EXPECT_EQ(check.Status.FontSize(), 0);
    EXPECT_EQ(check.size.height, 8490 - 690);
    EXPECT_EQ(check.Status.Top(), 495);
    EXPECT_TRUE(check.Frame[0].Visible() && check.cmdAceptar.Visible());
    EXPECT_EQ(check.Using[0].Caption(), "1.6.9");
    EXPECT_EQ(check.NewOne[0].Caption(), "1.7.0");
    EXPECT_EQ(check.Using[1].Caption(), "");   // missing: counts as newer
    EXPECT_EQ(check.NewOne[5].Caption(), "6"); // the seventh line is ignored
    EXPECT_EQ(check.DBUsing.Caption(), "2004");
    EXPECT_EQ(check.DBUpdate.Caption(), "2004");
    EXPECT_EQ(check.URL2Download.Caption(), "https://quenlin.example/whats_new.asp#169");
    EXPECT_TRUE(check.frmWhatsNew.Enabled());
    check.URL2Download.Click();
    EXPECT_EQ(desktop.addresses, Log{"https://quenlin.example/whats_new.asp#169"});
    EXPECT_EQ(desktop.folders, Log{"C:\\"});
}

TEST_F(VersionInfo, UnattendedItIsOnlyReported)
{
    Check check;
    check.CheckAppsVersions();
    check.Answer(web, std::string(kNewer));
    EXPECT_EQ(shown, Log{});
    EXPECT_EQ(check.log, Log{"newer"});
}

TEST_F(VersionInfo, ANewerDatabaseHasItsOwnText)
{
    Check check;
    check.ShowIt = true;
    check.CheckAppsVersions();
    check.Answer(web, std::string(kSame));
    ExpectWindow();
    check.Answer(web, "1.6.6:2004\r\n1.6.7:2005\r\nQuenlin 1.6.9\r\nDravicolt 2");
    EXPECT_EQ(check.Status.Caption(), "A newer version is available."); // laid out for the result
    EXPECT_EQ(check.Status.FontSize(), 16);
    EXPECT_EQ(check.DBUsing.Caption(), "2004");
    EXPECT_EQ(check.DBUpdate.Caption(), "2005");
}

TEST_F(VersionInfo, NoDifferenceInTheTools)
{
    // Of the file's tools only this program: equal to the one that runs.
    for (const bool sameDate : {true, false}) {
        SCOPED_TRACE(sameDate);
        shown.clear();
        Check check;
        check.ShowIt = true;
        check.CheckAppsVersions();
        check.Answer(web, std::string(kSame));
        if (sameDate)
            ExpectWindow();
        check.Answer(web, std::string("1.6.6:2004\r\n1.6.7:") + (sameDate ? "2004" : "2005") +
                              "\r\nQuenlin 1.6.9");
        EXPECT_EQ(check.log, Log{"none"});
        EXPECT_EQ(shown, sameDate ? Log{"frmVersionInfo"} : Log{});
        EXPECT_EQ(check.Status.Caption(),
                  sameDate ? "No newer version available."
                           : "Brandolet is up to date, but there's a newer database.");
    }
}

TEST_F(VersionInfo, AFileWithOnlyTheFirstBlockLeavesTheLabels)
{
    Check check;
    check.CheckAppsVersions();
    check.Answer(web, std::string(kSame));
    check.Answer(web, "1.6.6:2004\r\n1.6.7:2005");
    EXPECT_EQ(check.NewOne[0].Caption(), "");
    EXPECT_EQ(check.Using[0].Caption(), "");
}

TEST_F(VersionInfo, WithoutABaseTheFrameCannotBeUsed)
{
    Check check;
    check.CheckAppsVersions();
    check.WebVrChk1.base.clear();
    check.Answer(web, std::string(kNewer));
    EXPECT_FALSE(check.frmWhatsNew.Enabled());
}

TEST_F(VersionInfo, NoConnectionIsShownOnlyInTheWindow)
{
    Check check;
    check.CheckAppsVersions();
    check.Answer(web, std::nullopt);
    EXPECT_EQ(check.Status.Caption(), "Couldn't connect or the file was not found.");
    EXPECT_EQ(check.log, Log{});
    EXPECT_EQ(check.size.height, 2200 - 690); // the window stays as it is
}

// --- The owner.

struct Checks : VersionInfo {
    ui::Timer autoCheck{60000, true}, clear{45000};
    online::VersionChecks checks{autoCheck, clear, {}};

    void SetUp() override
    {
        tests::LibraryFixture::SetUp();
        shell::TheGlobals().AutoCheckNewerVersion = true;
    }
    void TearDown() override { shell::TheGlobals() = {}; }

    // The main window has been loaded with the preference on, and a minute has passed.
    void FirstTick()
    {
        shell::SaveFlagPreference("AutoCheckNewerVersion", true);
        autoCheck.event();
        autoCheck.Fire();
    }
    void Answer(const std::optional<std::string> &bytes)
    {
        checks.Current()->Delayer.Fire();
        web.Answer(bytes);
    }
};

TEST_F(Checks, OffByDefault)
{
    autoCheck.event(); // as the main window's load does
    EXPECT_FALSE(autoCheck.Enabled());
    EXPECT_EQ(checks.Current(), nullptr);
    EXPECT_EQ(web.addresses, Log{});
}

TEST_F(Checks, OnTheFirstCheckIsAtTheFirstTick)
{
    shell::SaveFlagPreference("AutoCheckNewerVersion", true);
    autoCheck.event(); // as the main window's load does
    EXPECT_TRUE(autoCheck.Enabled());
    EXPECT_EQ(checks.Current(), nullptr);
    autoCheck.Fire();
    ASSERT_NE(checks.Current(), nullptr);
    EXPECT_FALSE(checks.Current()->ShowIt);
    EXPECT_TRUE(clear.Enabled());
    EXPECT_TRUE(autoCheck.Enabled());
}

TEST_F(Checks, TurnedOffMeanwhileTheTimerStops)
{
    shell::SaveFlagPreference("AutoCheckNewerVersion", true);
    autoCheck.event();
    ASSERT_TRUE(autoCheck.Enabled());
    shell::TheGlobals().AutoCheckNewerVersion = false;
    autoCheck.Fire();
    EXPECT_FALSE(autoCheck.Enabled());
    EXPECT_EQ(checks.Current(), nullptr);
}

TEST_F(Checks, AnUnansweredCheckIsGivenUpAndBegunAgain)
{
    FirstTick();
    clear.Fire();
    EXPECT_FALSE(clear.Enabled());
    EXPECT_EQ(checks.Current(), nullptr);
    EXPECT_TRUE(autoCheck.Enabled());
    autoCheck.Fire();
    EXPECT_NE(checks.Current(), nullptr);
}

TEST_F(Checks, NothingNewerEndsTheUnattendedChecks)
{
    FirstTick();
    Answer(std::string(kSame));
    Answer(std::string(kSame));
    EXPECT_EQ(checks.Current(), nullptr);
    EXPECT_FALSE(autoCheck.Enabled());
    EXPECT_FALSE(clear.Enabled());
    EXPECT_EQ(desktop.boxes.size(), 0u);
}

TEST_F(Checks, ANewerVersionAsks)
{
    shell::SaveFlagPreference("AutoCheckNewerVersion", true);
    autoCheck.event();
    for (const auto answer : {platform::Answer::No, platform::Answer::Yes}) {
        web.addresses.clear();
        autoCheck.SetEnabled(true);
        autoCheck.Fire();
        desktop.ExpectBox(
            "There's a new version available.\rDo you want to see more information about it?",
            answer);
        Answer(std::string(kNewer));
        EXPECT_EQ(desktop.boxes.back().title, "Newer version");
        EXPECT_EQ(desktop.boxes.back().buttons, platform::Buttons::YesNo);
        EXPECT_EQ(checks.Current(), nullptr);
        EXPECT_FALSE(autoCheck.Enabled());
        EXPECT_FALSE(clear.Enabled());
        EXPECT_EQ(shown, Log{});
    }
}

TEST_F(Checks, TheMenusCheckKeepsItsFormUntilTheNext)
{
    checks.submnuNewerVersion_Click();
    EXPECT_TRUE(checks.Current()->ShowIt);
    Answer(std::nullopt);
    const auto *first = checks.Current();
    EXPECT_NE(first, nullptr);
    checks.submnuNewerVersion_Click();
    EXPECT_NE(checks.Current(), nullptr);
    EXPECT_NE(checks.Current(), first);
}

TEST_F(Checks, ATickDoesNotReplaceAResultThatIsShown)
{
    shell::SaveFlagPreference("AutoCheckNewerVersion", true);
    autoCheck.event();
    checks.submnuNewerVersion_Click();
    const auto *first = checks.Current();
    ExpectWindow([&] {
        autoCheck.Fire();
        EXPECT_EQ(checks.Current(), first);
    });
    Answer(std::string(kNewer));
    EXPECT_EQ(shown, Log{"frmVersionInfo"});
    EXPECT_EQ(checks.Current(), nullptr); // the handler of its event destroyed it
}

} // namespace
