// The preferences window with mouse and keys, and all steps of a new user from the first start to
// the first list.
#include "browser/commands.h"
#include "browser/form/commandstate.h"
#include "catalogue/regeneration.h"
#include "catalogue/regeneration/walker.h"
#include "platform/posix/disk/systemfolders.h"
#include "platform/posix/systemclock.h"
#include "shell/preferences/preferences.h"
#include "shell/settings.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/mainwindowfixture.h"
#include "tests/windows/paintcounter.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

namespace tests
{

namespace
{

class PreferencesWindowScaled : public MainWindowTest
{
protected:
    PreferencesWindowScaled()
    {
        WriteFile(folder / "user-dirs.dirs", "XDG_MUSIC_DIR=\"" + Music() + "\"\n");
        places.userFolders = folder / "user-dirs.dirs";
        folders = std::make_unique<platform::posix::SystemFolders>(places);
        folderBefore = folders->CurrentFolder();
        platform::TheMachine().folders = folders.get();
        drives.roots = {folder.Path()};
    }
    ~PreferencesWindowScaled() override
    {
        folders->SetCurrentFolder(folderBefore);
        platform::TheMachine().folders = nullptr;
    }

    void StartWithPreferences()
    {
        Start();
        shell::InstallPreferences();
        browser::UpdateCommands(Form());
        browser::LoadTreeView(Form(), "");
    }

    void OpenFromTheMenu() { ChooseMenu("mnuTools", "submnuPreferences"); }

    std::string Stored() const { return shell::GetSetting(shell::kPreferences, "MP3 Directory"); }

    platform::posix::SystemFolders::Places places;
    std::unique_ptr<platform::posix::SystemFolders> folders;
    std::string folderBefore;
    ui::qt::FormWindows host;
};

TEST_F(PreferencesWindowScaled, ANewcomerGetsToTheFirstListInFiveActions)
{
    EncodeFour();
    settings.values.erase("Quenlin/Preferences/MP3 Directory");
    StartWithPreferences();
    int actions = 1;             // closing the tips of the day
    QPushButton *hint = nullptr; // shown a little later than the list, see ListView
    ASSERT_TRUE(WaitUntil([&] {
        hint = window->findChild<QPushButton *>(QStringLiteral("cmdHint"));
        return hint != nullptr && hint->isVisible();
    }));
    KeepScreenshot(*window, "first-start");
    desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No); // one song has no tag
    bool seen = false;
    WhenModal([&](QWidget &modal) {
        KeepScreenshot(modal, "preferences");
        EXPECT_EQ(modal.windowTitle(), QStringLiteral("Preferences"));
        EXPECT_EQ(NamelessControls(modal), std::vector<std::string>());
        EXPECT_EQ(Find<QLineEdit>(modal, "txtPath")->text().toStdString(), Music());
        seen = true;
        Click(*Find(modal, "cmdOk"));
        actions++;
    });
    Click(*hint);
    actions++;
    EXPECT_TRUE(seen);
    actions += static_cast<int>(desktop.boxes.size());
    EXPECT_EQ(Stored(), Music());
    EXPECT_TRUE(TV().isEnabled() && LV().isEnabled());
    EXPECT_FALSE(hint->isVisible());
    EXPECT_EQ(window->focusWidget(), &TV());
    EXPECT_TRUE(Form().LV.Hint().find("4 songs") != std::string::npos) << Form().LV.Hint();
    KeepScreenshot(*window, "first-regeneration-done");
    ClickNode("ByTitle");
    actions++;
    bool listed = false;
    for (int row = 0; row < Form().LV.Count(); row++)
        listed |= Cell(row, 1) == "So What";
    EXPECT_TRUE(listed);
    EXPECT_LE(actions, 5);
}

TEST_F(PreferencesWindowScaled, EnterInThePathOpensTheTreeAndPressesNoButton)
{
    std::filesystem::create_directories(Song("deep/er"));
    StartWithPreferences();
    WhenModal([&](QWidget &modal) {
        auto &path = *Find<QLineEdit>(modal, "txtPath");
        path.setFocus();
        path.selectAll();
        TypeText(Song("deep/er"));
        PressKey("Enter");
        EXPECT_TRUE(modal.isVisible());
        auto &tree = *Find<QTreeView>(modal, "tvwDirTree");
        EXPECT_EQ(tree.currentIndex().data().toString(), QStringLiteral("er"));
        EXPECT_EQ(catalogue::MP3s().Path(), Song("deep/er"));
        KeepScreenshot(modal, "preferences-path");
        PressKey("Escape");
    });
    OpenFromTheMenu();
    EXPECT_EQ(Stored(), Music());
    EXPECT_EQ(catalogue::MP3s().Path(), Song("deep/er")); // Cancel leaves it there
}

TEST_F(PreferencesWindowScaled, ARegenerationShowsHereAndTheWindowStays)
{
    EncodeFour();
    std::filesystem::create_directories(folder / "other");
    settings.Write("Quenlin", "Preferences", "MP3 Directory", folder / "other");
    StartWithPreferences();
    desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No);
    bool shown = false, stayed = false, rests = false;
    WhenModal([&](QWidget &modal) {
        auto &path = *Find<QLineEdit>(modal, "txtPath");
        path.setFocus();
        path.selectAll();
        TypeText(Music());
        desktop.doEvents = [&] {
            QApplication::processEvents();
            if (!catalogue::IsRegenerating() || catalogue::LastRegeneration().files != 2 || shown)
                return;
            shown = Find(modal, "PBar")->isVisible() && Find(modal, "lblProgress")->isVisible();
            rests = !Find(modal, "cmdOk")->isEnabled() && !Find(modal, "cmdApply")->isEnabled() &&
                    !Find(modal, "tvwDirTree")->isEnabled() && !path.isEnabled();
            KeepScreenshot(modal, "preferences-regeneration");
            modal.close();
            stayed = modal.isVisible();
        };
        Click(*Find(modal, "cmdApply"));
        desktop.doEvents = [] { QApplication::processEvents(); };
        EXPECT_TRUE(modal.isVisible());
        EXPECT_FALSE(Find(modal, "PBar")->isVisible());
        Click(*Find(modal, "cmdCancel"));
    });
    OpenFromTheMenu();
    EXPECT_TRUE(shown);
    EXPECT_TRUE(rests);
    EXPECT_TRUE(stayed);
    EXPECT_EQ(Stored(), Music());
    EXPECT_NE(Form().TV.Find("@SO WHAT"), ui::kNoNode);
}

TEST_F(PreferencesWindowScaled, ALineThatEachSongChangesIsPaintedAFewTimes)
{
    constexpr int kFrameMs = 30; // 40, and the timer may be early
    StartWithPreferences();
    WhenModal([](QWidget &modal) {
        auto *line = Find<QLabel>(modal, "lblProgress");
        auto &form = static_cast<shell::PreferencesForm &>(*ui::TheFormHost()->Forms().back());
        const PaintCounter counter(*line);
        form.lblProgress.SetVisible(true);
        EXPECT_TRUE(line->isVisible());
        const int before = counter.AtRest();
        QElapsedTimer time;
        time.start();
        for (int song = 0; song < 500; ++song) {
            form.lblProgress.SetCaption("Adding: " + std::to_string(song) + ".mp3");
            QCoreApplication::processEvents();
        }
        EXPECT_LE(counter.paints - before, time.elapsed() / kFrameMs + 2);
        form.lblProgress.SetCaption("Adding: the last one");
        EXPECT_TRUE(
            WaitUntil([line] { return line->text() == QStringLiteral("Adding: the last one"); }));
        PressKey("Escape");
    });
    OpenFromTheMenu();
}

TEST_F(PreferencesWindowScaled, AFolderThatDoesNotAnswerShowsWithoutChildren)
{
    constexpr int kPatienceMs = 2000;
    std::filesystem::create_directories(Song("silent/within"));
    // Kept by the helper threads, which may go on after the test.
    const auto released = std::make_shared<std::atomic<bool>>(false);
    places.beforeRead = [released](const std::string &path) {
        while (path.ends_with("/silent") && !*released)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    };
    places.isAutomount = [](int, const char *name) { return std::string_view(name) == "silent"; };
    folders = std::make_unique<platform::posix::SystemFolders>(places);
    platform::TheMachine().folders = folders.get();
    StartWithPreferences();
    platform::posix::SystemClock real;
    int turns = 0;
    QTimer alive;
    QObject::connect(&alive, &QTimer::timeout, &alive, [&turns] { ++turns; });
    WhenModal(
        [&](QWidget &modal) {
            auto &tree = *Find<QTreeView>(modal, "tvwDirTree");
            const QString chosen = tree.currentIndex().data().toString();
            const auto silentNode = [&tree] {
                const auto found = tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole,
                                                       QStringLiteral("silent"), 1,
                                                       Qt::MatchExactly | Qt::MatchRecursive);
                return found.isEmpty() ? QModelIndex() : found.first();
            };
            ASSERT_TRUE(silentNode().isValid());
            tree.scrollTo(silentNode());
            platform::TheMachine().clock = &real;
            const std::int64_t from = real.SteadyMs();
            alive.start(20);
            ClickAt(*tree.viewport(), tree.visualRect(silentNode()).center());
            EXPECT_TRUE(WaitUntil(
                [&] { return real.SteadyMs() - from >= kPatienceMs && tree.isEnabled(); }));
            EXPECT_GT(turns, 20) << "the window lives meanwhile";
            ASSERT_TRUE(silentNode().isValid());
            EXPECT_EQ(tree.model()->rowCount(silentNode()), 0);
            EXPECT_EQ(tree.currentIndex().data().toString(), chosen) << "the selection is back";
            EXPECT_EQ(Find<QLineEdit>(modal, "txtPath")->text().toStdString(), Music());
            platform::TheMachine().clock = &clock;
            PressKey("Escape");
        },
        30000);
    OpenFromTheMenu();
    *released = true;
}

TEST_F(PreferencesWindowScaled, AFieldIsTurnedOffByItsBox)
{
    StartWithPreferences();
    WhenModal([&](QWidget &modal) {
        auto &artist = *Find<QCheckBox>(modal, "LoadTreeOpt(1)");
        ClickAt(artist, {artist.height() / 2, artist.height() / 2}); // it is wider than its text
        EXPECT_FALSE(artist.isChecked());
        Click(*Find(modal, "cmdOk"));
    });
    OpenFromTheMenu();
    EXPECT_EQ(Form().TV.Find("ByArtist"), ui::kNoNode);
    EXPECT_NE(Form().TV.Find("ByTitle"), ui::kNoNode);
}

} // namespace

} // namespace tests
