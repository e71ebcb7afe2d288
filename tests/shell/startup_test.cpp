#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "runtime/error.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "shell/startup/batch.h"
#include "shell/startup/startup.h"
#include "tests/support/errorof.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

using namespace shell;
using Steps = std::vector<std::string>;

constexpr const char *kTooOld = "You need a newer version of the database to go on.";
constexpr const char *kDamaged =
    "You're database is corrupted. Download the last version\r"
    "of 'Tessaroon.mdb' and run the 'Tessaroon'. Would you like to go to\r"
    "the download page now?";

// The program's folder with a shipped catalogue, and windows that only record the calls.
class StartUp : public tests::LibraryFixture
{
protected:
    StartUp()
    {
        catalogue::DataAccess.reset(); // Main makes it
        windows.LoadMainWindow = [this] { Note("LoadMainWindow"); };
        windows.ShowWebStyle = [this](bool on) { Note(on ? "WebStyle on" : "WebStyle off"); };
        windows.ShowSplash = [this] { Note("ShowSplash"); };
        windows.ListRefresh = [this](bool progress) {
            Note(progress ? "ListRefresh with a bar" : "ListRefresh");
            EXPECT_EQ(desktop.pointer, platform::Pointer::Hourglass);
        };
        windows.SizeMainWindow = [this] { Note("SizeMainWindow"); };
        windows.BuildLanguageMenu = [this](const std::vector<std::string> &captions) {
            std::string note = "BuildLanguageMenu";
            for (const std::string &caption : captions)
                note += " " + caption;
            Note(note);
        };
        windows.LoadShellIcons = [this] { Note("LoadShellIcons"); };
        windows.LoadTreeView = [this](std::string_view field) {
            Note("LoadTreeView(" + std::string(field) + ")");
        };
        windows.ArmSplashTimer = [this] { Note("ArmSplashTimer"); };
    }

    void Note(const std::string &step) { steps.push_back(step); }
    std::string Catalogue() const { return folder / "app/MP3s.mdb"; }

    // Changes the catalogue's file without the program.
    void Change(const std::string &statement)
    {
        sqlite3 *file = nullptr;
        ASSERT_EQ(sqlite3_open(Catalogue().c_str(), &file), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(file, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(file);
        sqlite3_close(file);
    }

    // Starts and expects a refusal whose box has this text, before any preference is read and any
    // window is shown.
    void ExpectRefused(const std::string &text, platform::Answer answer = platform::Answer::Ok)
    {
        steps.clear();
        store.reads.clear();
        const std::size_t before = desktop.boxes.size();
        desktop.ExpectBox(text, answer);
        EXPECT_EQ(Main({}, windows), std::optional<int>(1));
        ASSERT_EQ(desktop.boxes.size(), before + 1);
        EXPECT_EQ(desktop.boxes.back().text, text);
        EXPECT_EQ(steps, Steps{"LoadMainWindow"});
        EXPECT_EQ(store.reads, Steps{"Preferences/Language"});
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
    }

    tests::MemorySettings store;
    tests::MemoryFileTypes registry;
    StartUpWindows windows;
    Steps steps;
};

TEST_F(StartUp, RunsItsStepsInOrder)
{
    tests::WriteFile(folder / "app/Deutsch.qlt", "");
    EXPECT_EQ(Main({}, windows), std::nullopt);
    EXPECT_EQ(steps, (Steps{"LoadMainWindow", "WebStyle on", "ShowSplash", "SizeMainWindow",
                            "BuildLanguageMenu Deutsch", "LoadShellIcons", "LoadTreeView()",
                            "ArmSplashTimer"}));
    EXPECT_EQ(desktop.pointer, platform::Pointer::Normal);
    EXPECT_EQ(registry.types.size(), 2u);
    EXPECT_EQ(TheGlobals().HelpFilePath, folder / "app/Brandolet.hlp");
}

TEST_F(StartUp, LetsEventsRunWithTheHourglassAndAfterIt)
{
    desktop.doEvents = [this] {
        if (steps.size() > 1) // the catalogue's check yields before
            Note(desktop.pointer == platform::Pointer::Hourglass ? "yield under it" : "yield");
    };
    EXPECT_EQ(Main({}, windows), std::nullopt);
    EXPECT_EQ(steps, (Steps{"LoadMainWindow", "WebStyle on", "ShowSplash", "yield under it",
                            "SizeMainWindow", "BuildLanguageMenu", "LoadShellIcons",
                            "LoadTreeView()", "ArmSplashTimer", "yield"}));
}

TEST_F(StartUp, RegistersBothTypesBeforeAnythingCanFail)
{
    fs::remove(Catalogue());
    windows.LoadMainWindow = [this] {
        Note("LoadMainWindow");
        EXPECT_EQ(registry.types.size(), 2u);
    };
    desktop.ExpectBox("You're database is corrupted.", platform::Answer::No);
    EXPECT_EQ(Main({}, windows), std::optional<int>(1));
    EXPECT_EQ(steps, Steps{"LoadMainWindow"});
}

TEST_F(StartUp, ReadsThePreferencesInTheirOrder)
{
    store.values = {{"Quenlin/Preferences/Language", "Español.qlt"},
                    {"Quenlin/Preferences/Initial TV Width", "4321"},
                    {"Quenlin/Preferences/MP3 Directory", "/m\xFFsic"},
                    {"Quenlin/Preferences/Back Up Files", "0"},
                    {"Quenlin/Preferences/Update DB after editing", "0"},
                    {"Quenlin/Preferences/Show Lyrics automatically", "0"},
                    {"Quenlin/Preferences/Delete Before Append", "1"},
                    {"Quenlin/Preferences/WebStyle", "0"},
                    {"Quenlin/Preferences/AutoCheckNewerVersion", "1"},
                    {"Quenlin/Preferences/Load List", "0"}};
    EXPECT_EQ(Main({}, windows), std::nullopt);
    const Globals &globals = TheGlobals();
    EXPECT_EQ(globals.LanguageFilePath, folder / "app/Español.qlt");
    EXPECT_EQ(globals.InitialTVWidth, 4321);
    EXPECT_EQ(globals.MP3Directory, "/m\xFFsic");
    EXPECT_FALSE(globals.BackUpFiles);
    EXPECT_FALSE(globals.UpdateDBAfterEditing);
    EXPECT_FALSE(globals.ShowLyricsAutomatically);
    EXPECT_TRUE(globals.DeleteBeforeAppend);
    EXPECT_FALSE(globals.WebStyle);
    EXPECT_TRUE(globals.AutoCheckNewerVersion);
    EXPECT_EQ(globals.LoadField, (std::array{true, true, true, true, true, true, false, true}));
    EXPECT_EQ(steps[1], "WebStyle off");
    std::string reads;
    for (const std::string &read : store.reads)
        reads += read.substr(read.find('/') + 1) + "|";
    EXPECT_EQ(reads, "Language|Initial TV Width|MP3 Directory|Back Up Files|"
                     "Update DB after editing|Show Lyrics automatically|Delete Before Append|"
                     "WebStyle|AutoCheckNewerVersion|Load Title|Load Artist|Load Album|Load Year|"
                     "Load Comment|Load Genre|Load List|Load Path|RefreshAtStartUp|");
}

TEST_F(StartUp, RegeneratesWhenTheSettingAsksForIt)
{
    store.values["Quenlin/Preferences/RefreshAtStartUp"] = "1";
    EXPECT_EQ(Main({}, windows), std::nullopt);
    ASSERT_GE(steps.size(), 4u);
    EXPECT_EQ(steps[3], "ListRefresh"); // between the splash and the sizing, without a bar
}

TEST_F(StartUp, ARegenerationThatFailsIsReportedAndTheWindowOpens)
{
    store.values["Quenlin/Preferences/RefreshAtStartUp"] = "1";
    windows.ListRefresh = [](bool) { throw runtime::RuntimeError(runtime::kPathNotFound); };
    desktop.ExpectBox("Run-time error '76':\r\rPath not found");
    EXPECT_EQ(Main({}, windows), std::nullopt);
    EXPECT_EQ(steps.back(), "ArmSplashTimer");
    EXPECT_EQ(desktop.pointer, platform::Pointer::Normal);
}

TEST_F(StartUp, ALanguageFileIsFoundInAnyLetterCase)
{
    tests::WriteFile(folder / "app/Español.QLT", "");
    const std::pair<const char *, const char *> cases[] = {{"Español.qlt", "app/Español.QLT"},
                                                           {"ESPAÑOL.qlt", "app/Español.QLT"},
                                                           {"Deutsch.qlt", "app/Deutsch.qlt"},
                                                           {"", "app/"}};
    for (const auto &[setting, want] : cases) {
        store.values["Quenlin/Preferences/Language"] = setting;
        EXPECT_EQ(Main({}, windows), std::nullopt);
        EXPECT_EQ(TheGlobals().LanguageFilePath, folder / want);
    }
    tests::WriteFile(folder / "app/español.qlt", "");
    for (const char *name : {"español.qlt", "Español.QLT"}) {
        store.values["Quenlin/Preferences/Language"] = name;
        EXPECT_EQ(Main({}, windows), std::nullopt);
        EXPECT_EQ(TheGlobals().LanguageFilePath, folder / (std::string("app/") + name));
    }
}

TEST_F(StartUp, ASettingThatIsNoNumberIsReportedAndTheStartContinues)
{
    ForgetReportedSettings();
    store.values["Quenlin/Preferences/WebStyle"] = "abc";
    desktop.ExpectBox("WebStyle=abc");
    EXPECT_EQ(Main({}, windows), std::nullopt);
    EXPECT_TRUE(TheGlobals().WebStyle);
    ForgetReportedSettings();
}

TEST_F(StartUp, TheVersionRule)
{
    const std::pair<const char *, bool> cases[] = {
        {"1.6.6", true},  {"1.6.7", true},  {"2.6.6", true},  {"1.06.6", true},
        {"1.5.9", false}, {"2.0.9", false}, {"2.0.0", false}, {"1.7.0", false}};
    for (const auto &[version, passes] : cases) {
        SCOPED_TRACE(version);
        Change(std::string("UPDATE Validations SET Version = '") + version + "'");
        if (passes)
            EXPECT_EQ(Main({}, windows), std::nullopt);
        else
            ExpectRefused(kTooOld);
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
    }
    EXPECT_EQ(desktop.boxes.back().title, ""); // the title of the application
    EXPECT_EQ(desktop.boxes.back().buttons, platform::Buttons::Ok);
}

TEST_F(StartUp, AVersionThatIsNoneIsAnError)
{
    const std::pair<const char *, int> cases[] = {{"'1.6'", runtime::kSubscriptOutOfRange},
                                                  {"'1.x.6'", runtime::kTypeMismatch},
                                                  {"''", runtime::kSubscriptOutOfRange}};
    for (const auto &[version, error] : cases) {
        Change(std::string("UPDATE Validations SET Version = ") + version);
        EXPECT_EQ(tests::ErrorOf([&] { Main({}, windows); }), error) << version;
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
    }
    Change("DELETE FROM Validations");
    EXPECT_NE(tests::ErrorOf([&] { Main({}, windows); }), 0); // there is no row to read
}

TEST_F(StartUp, ACatalogueWithoutTheTableIsTooOld)
{
    Change("DROP TABLE Validations");
    ExpectRefused(kTooOld);
}

TEST_F(StartUp, AnIncompleteCatalogueIsDamagedAndNotChanged)
{
    const std::string whole = tests::ReadFile(Catalogue());
    std::string wiped = whole;
    std::fill_n(wiped.begin(), 4096, '\0');
    const std::pair<const char *, std::string> cases[] = {
        {"empty", ""},
        {"text", "This is no database at all.\n"},
        {"wiped header page", wiped},
        {"one byte", whole.substr(0, 1)},
        {"header alone", whole.substr(0, 100)},
        {"one page", whole.substr(0, 4096)},
        {"half", whole.substr(0, whole.size() / 2)},
        {"last byte gone", whole.substr(0, whole.size() - 1)}};
    for (const auto &[name, bytes] : cases) {
        SCOPED_TRACE(name);
        tests::WriteFile(Catalogue(), bytes);
        ExpectRefused(kDamaged, platform::Answer::No);
        EXPECT_EQ(tests::ReadFile(Catalogue()), bytes);
    }
    EXPECT_EQ(desktop.boxes.back().title, "Corrupted file");
    EXPECT_EQ(desktop.boxes.back().buttons, platform::Buttons::YesNo);
    EXPECT_TRUE(desktop.addresses.empty());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "app"), {}), 1);
}

TEST_F(StartUp, AnAbsentCatalogueIsDamagedAndIsNotMade)
{
    fs::remove(Catalogue());
    ExpectRefused(kDamaged, platform::Answer::Yes);
    EXPECT_TRUE(fs::is_empty(folder / "app"));
    ASSERT_EQ(desktop.addresses.size(), 1u);
    EXPECT_TRUE(desktop.addresses[0].ends_with("/Quenlin/downloadfiles-index.htm"));
    EXPECT_EQ(desktop.folders, Steps{"C:\\"});
}

TEST_F(StartUp, ABatchEndsWithoutTheMainWindow)
{
    tests::WriteFile(Song("a.mp3"), tests::Id3v2(tests::TextFrame("TIT2", "T")) + tests::Audio());
    EXPECT_EQ(Main({Song("a.mp3")}, windows), std::optional<int>(0));
    EXPECT_EQ(steps, (Steps{"LoadMainWindow", "WebStyle on", "ShowSplash"}));
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_TRUE(fs::exists(folder / "app/Solution.txt"));
}

TEST_F(StartUp, ABatchOnARefusedCatalogueDoesNothing)
{
    Change("UPDATE Validations SET Version = '1.5.9'");
    desktop.ExpectBox(kTooOld);
    EXPECT_EQ(Main({"/a.mp3"}, windows), std::optional<int>(1));
    EXPECT_FALSE(fs::exists(folder / "app/Solution.txt"));
}

TEST_F(StartUp, RegeneratesAFolderFromTheCommandLine)
{
    tests::WriteFile(Song("a.mp3"), tests::Id3v2(tests::TextFrame("TIT2", "T")) + tests::Audio() +
                                        tests::Id3v1({.title = "T"}));
    EXPECT_EQ(MainRegenerate(Music(), windows), 0);
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_EQ(tests::ErrorOf([&] { MainRegenerate(folder / "absent", windows); }),
              runtime::kPathNotFound);
    fs::remove(Catalogue());
    catalogue::CloseCatalogue();
    desktop.ExpectBox("You're database is corrupted.", platform::Answer::No);
    EXPECT_EQ(MainRegenerate(Music(), windows), 1);
}

TEST_F(StartUp, WithoutWindowsEachStepIsPassedOver)
{
    EXPECT_EQ(Main({}, {}), std::nullopt);
}

TEST_F(StartUp, LanguagesAreTheFilesOfTheirExtension)
{
    EXPECT_EQ(FindLanguages(), std::vector<std::string>{});
    tests::WriteFile(folder / "app/Español.qlt", "");
    tests::WriteFile(folder / "app/Deutsch.QLT", "");
    tests::WriteFile(folder / "app/notes.qlt.txt", "");
    tests::WriteFile(folder / "app/qlt", "");
    fs::create_directories(folder / "app/folder.qlt");
    auto names = FindLanguages();
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"Deutsch", "Español"}));
    SetAppPath(folder / "absent");
    EXPECT_EQ(FindLanguages(), std::vector<std::string>{});
}

TEST_F(StartUp, TheAccessObjectIsConfiguredForTheProgramsFolder)
{
    catalogue::ADOclass access;
    const std::string fresh = access.GetInsertString();
    access.TableName = "other";
    access.AddCampo("Title", catalogue::DatoType::Text, 0);
    SetADOFields(access);
    access.TableName.clear();
    EXPECT_EQ(access.GetInsertString(), fresh) << "its lists are empty";
    SetADOFields(access);
    EXPECT_EQ(access.DirBase, folder / "app/");
    EXPECT_EQ(access.DataBaseName, "MP3s");
    EXPECT_EQ(access.TableName, "MP3s");
    EXPECT_EQ(access.TipoLectura, 1);
}

TEST_F(StartUp, AnErrorIsShownWithItsNumberAndWords)
{
    desktop.ExpectBox("Run-time error");
    ShowRuntimeError(runtime::RuntimeError(runtime::kTypeMismatch));
    EXPECT_EQ(desktop.boxes.back().text, "Run-time error '13':\r\rType mismatch");
}

} // namespace
