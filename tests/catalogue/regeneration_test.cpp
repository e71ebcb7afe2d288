#include "catalogue/adoclass.h"
#include "catalogue/integrityreport.h"
#include "catalogue/regeneration.h"
#include "catalogue/walker.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

namespace fs = std::filesystem;
using catalogue::LastRegeneration;
using catalogue::ListRefresh;
using platform::Answer;
using RowList = std::vector<std::string>;

namespace
{

std::string Tagged(std::string_view title)
{
    return tests::Id3v2(tests::TextFrame("TIT2", title) + tests::TextFrame("TCON", "Pop")) +
           tests::Audio() + tests::Id3v1({.title = title, .genre = 13});
}

// The controls of a main window, without the window.
struct Regeneration : tests::LibraryFixture {
    ui::StatusBar bar{{{"Playing", "", 0, true}, {"Blank", "", 0, true}}};
    ui::ProgressBar progress;
    std::optional<bool> enabled; // TV and LV, as last set
    int listsEmptied = 0, barsLaid = 0, mails = 0;
    RowList playing, blank; // each text that the panels showed

    Regeneration()
    {
        catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
        controls.SB = &bar;
        controls.PBar = &progress;
        controls.EnableTVAndLV = [this](bool on) { enabled = on; };
        controls.EmptyLV = [this] { listsEmptied++; };
        controls.LayPBarOverPanel = [this] { barsLaid++; };
        controls.EmailBugReport = [this] { mails++; };
        bar.changed = [this] {
            Note(playing, bar.Panel("Playing").text);
            Note(blank, bar.Panel("Blank").text);
        };
    }

    static void Note(RowList &texts, const std::string &text)
    {
        if (texts.empty() ? !text.empty() : texts.back() != text)
            texts.push_back(text);
    }

    void AddSong(const std::string &name) { tests::WriteFile(Song(name), Tagged(name)); }

    RowList Paths() const
    {
        RowList paths;
        for (const std::string &row : Rows()) {
            const auto start = row.find("|~/") + 3;
            paths.push_back(row.substr(start, row.find('|', start) - start));
        }
        return paths;
    }

    std::string Report() const { return tests::ReadFile(catalogue::ReportPath()); }
};

TEST_F(Regeneration, WalksFilesThenFoldersInTheirOrder)
{
    for (const char *name : {"z.mp3", "B/2.MP3", "a/1.mp3", "a/in/x.mp3", "a/0.Mp3", "c/no.txt"})
        AddSong(name);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"z.mp3", "a/0.Mp3", "a/1.mp3", "a/in/x.mp3", "B/2.MP3"}));
    EXPECT_EQ(LastRegeneration().files, 5);
    EXPECT_EQ(LastRegeneration().failed, 0);
    EXPECT_EQ(catalogue::Dirs().Path(), Music());
    EXPECT_EQ(progress.Max(), 5);
    EXPECT_EQ(progress.Value(), 5);
    EXPECT_EQ(playing, (RowList{"Counting MP3s", "Adding: z.mp3", "Adding: 0.Mp3", "Adding: 1.mp3",
                                "Adding: x.mp3", "Adding: 2.MP3", ""}));
    EXPECT_EQ(blank, (RowList{"0/5", "1/5", "2/5", "3/5", "4/5", "5/5", ""}));
    EXPECT_EQ(listsEmptied, 1);
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(barsLaid, 0);
    EXPECT_FALSE(progress.Visible());
}

TEST_F(Regeneration, AmpersandBetweenBlanksIsDoubledInThePanel)
{
    AddSong("You & Me&Us.mp3");
    ListRefresh(false);
    EXPECT_EQ(playing[1], "Adding: You && Me&Us.mp3");
}

TEST_F(Regeneration, ReportOfAWholeCollectionTellsSuccessAndAsksNothing)
{
    AddSong("sub/a.mp3");
    ListRefresh(false);
    const std::string report = Report();
    const std::string end = "  Quenlin succeded getting the information of each file\r\n\r\n\r\n"
                            "Directory: " +
                            Music() + "\r\nDate of creation: 5.3.2026 7:8:9\r\n";
    ASSERT_GE(report.size(), end.size());
    EXPECT_EQ(report.substr(report.size() - end.size()), end);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Regeneration, EmptyFolderSetsAMaximumOfZero)
{
    progress.SetMax(7);
    ListRefresh(true);
    EXPECT_EQ(progress.Max(), 0);
    EXPECT_EQ(barsLaid, 1);
    EXPECT_FALSE(progress.Visible());
    EXPECT_NE(Report().find("Quenlin succeded"), std::string::npos);
    EXPECT_EQ(Rows(), RowList{});
}

TEST_F(Regeneration, MissingTagsAreReportedAndOffered)
{
    tests::WriteFile(Song("none.mp3"), tests::Audio());
    tests::WriteFile(Song("one.mp3"), tests::Audio() + tests::Id3v1({.title = "x", .genre = 13}));
    desktop.ExpectBox("There were some 'mistakes'", Answer::Yes);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"none.mp3", "one.mp3"}));
    EXPECT_NE(Report().find("  " + Song("none.mp3") +
                            "\r\n  Quenlin could not get any information for this file.\r\n\r\n"
                            "  " +
                            Song("one.mp3") +
                            "\r\n  Quenlin could not get the ID3v2 information\r\n\r\n\r\n\r\n"
                            "Directory: "),
              std::string::npos);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text,
              "There were some 'mistakes' while trying to get all the info.\r"
              " Would you like to see the report now?\r\r"
              "A file named \"Quenlin - MP3s' Intregity Report.qrp\"\r"
              "has been saved in this application folder for future reference");
    EXPECT_EQ(desktop.boxes[0].title, "Mistakes");
    EXPECT_EQ(desktop.boxes[0].icon, platform::BoxIcon::Exclamation);
    EXPECT_EQ(desktop.addresses, RowList{catalogue::ReportPath()});
    EXPECT_EQ(desktop.folders, RowList{"C:\\"});
    EXPECT_EQ(LastRegeneration().errors, "") << "an untagged file is no failure";
}

TEST_F(Regeneration, FailedFilesGoToTheClipboardAndTheRestGoesOn)
{
    AddSong("a.mp3");
    fs::create_symlink("nowhere", Song("gone.mp3"));
    AddSong("z.mp3");
    desktop.ExpectBox("Some files could not be added.", Answer::Yes);
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "z.mp3"}));
    EXPECT_EQ(desktop.clipboard, Song("gone.mp3") + ": No such file or directory\r");
    EXPECT_EQ(desktop.boxes[0].text,
              "Some files could not be added. If you think this is a bug, please\r"
              "send me an email with the reason why it cannot be added (this has\r"
              "just be pasted into your clipboard.\r\r"
              "Would you like to send me an email now?");
    EXPECT_EQ(desktop.boxes[0].title, "");
    EXPECT_EQ(mails, 1);
    EXPECT_TRUE(desktop.addresses.empty());
    EXPECT_EQ(LastRegeneration().failed, 1);
}

// The rights of a user who is not root, where the tests run as root.
struct AsNobody {
    uid_t was = geteuid();
    AsNobody() { EXPECT_TRUE(was != 0 || seteuid(65534) == 0); }
    ~AsNobody() { EXPECT_TRUE(was != 0 || seteuid(was) == 0); }
};

TEST_F(Regeneration, UnreadableFoldersAreNamedAndTheRestGoesOn)
{
    AddSong("a/a.mp3");
    AddSong("closed/in.mp3");
    AddSong("z/z.mp3");
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(folder / "app", fs::perms::all);
    fs::permissions(folder / "app/MP3s.mdb", fs::perms::all);
    fs::permissions(Song("closed"), fs::perms::none);
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    {
        const AsNobody nobody;
        ListRefresh(false);
    }
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3", "z/z.mp3"}));
    EXPECT_EQ(LastRegeneration().unreadableFolders,
              RowList{Song("closed") + ": Permission denied"});
    EXPECT_EQ(desktop.clipboard, Song("closed") + ": Permission denied\r");
    EXPECT_EQ(mails, 0);
}

TEST_F(Regeneration, SecondRunOfAFolderDoesNothingAndLeavesTheListsDisabled)
{
    AddSong("a/a.mp3");
    ListRefresh(true);
    EXPECT_EQ(enabled, true);
    AddSong("b.mp3");
    fs::remove(catalogue::ReportPath());
    ListRefresh(true);
    EXPECT_EQ(enabled, false);
    EXPECT_TRUE(progress.Visible()) << "the bar stays as the start of the run left it";
    EXPECT_TRUE(LastRegeneration().skipped);
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3"}));
    EXPECT_FALSE(fs::exists(catalogue::ReportPath()));

    shell::TheGlobals().MP3Directory = Song("a");
    ListRefresh(false);
    shell::TheGlobals().MP3Directory = Music();
    ListRefresh(false);
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3", "b.mp3"})) << "another folder in between reads afresh";
}

TEST_F(Regeneration, VanishedFilesKeepTheirRowsUnlessTheTableIsEmptiedFirst)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    ListRefresh(false);
    fs::remove(Song("a.mp3"));
    catalogue::Dirs().Clear();
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b.mp3"}));
    catalogue::Dirs().Clear();
    shell::TheGlobals().DeleteBeforeAppend = true;
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"b.mp3"}));
}

TEST_F(Regeneration, TableThatCannotBeEmptiedIsToldAndTheRunGoesOn)
{
    AddSong("a.mp3");
    ListRefresh(false);
    fs::rename(Song("a.mp3"), Song("b.mp3"));
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open((folder / "app/MP3s.mdb").c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db,
                           "CREATE TRIGGER keep BEFORE DELETE ON MP3s "
                           "BEGIN SELECT raise(ABORT, 'the rows are kept'); END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    catalogue::Dirs().Clear();
    shell::TheGlobals().DeleteBeforeAppend = true;
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b.mp3"}));
    EXPECT_EQ(desktop.clipboard, "Error: the rows are kept\r\tDELETE FROM MP3s\r");
    EXPECT_EQ(LastRegeneration().failed, 0);
}

TEST_F(Regeneration, ReportThatCannotBeWrittenEndsTheRunWhichCanBeTriedAgain)
{
    AddSong("a.mp3");
    fs::create_directory(catalogue::ReportPath());
    EXPECT_THROW(ListRefresh(true), runtime::RuntimeError);
    EXPECT_EQ(enabled, true);
    EXPECT_FALSE(progress.Visible());
    EXPECT_EQ(bar.Panel("Playing").text + bar.Panel("Blank").text, "");
    EXPECT_EQ(Rows(), RowList{});
    fs::remove(catalogue::ReportPath());
    ListRefresh(true);
    EXPECT_FALSE(LastRegeneration().skipped);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
}

TEST_F(Regeneration, FileThatFailsWithoutWordsIsNamed)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    tests::FailingPointer failing;
    failing.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(failing.clipboard, Song("a.mp3") + "\r");
    EXPECT_EQ(LastRegeneration().failed, 1);
    EXPECT_EQ(Paths(), (RowList{"b.mp3"}));
}

TEST_F(Regeneration, AbsentFolderIsError76)
{
    shell::TheGlobals().MP3Directory = Song("absent");
    try {
        ListRefresh(true);
        FAIL() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kPathNotFound);
        EXPECT_EQ(error.description, Song("absent") + ": Path not found");
    }
    EXPECT_EQ(enabled, true);
    EXPECT_FALSE(progress.Visible());
    EXPECT_FALSE(catalogue::IsRegenerating());
    EXPECT_FALSE(fs::exists(catalogue::ReportPath()));
}

TEST_F(Regeneration, NoFolderAtAllIsAnErrorEachTime)
{
    shell::TheGlobals().MP3Directory = "";
    for (int run = 0; run < 2; run++) {
        EXPECT_THROW(ListRefresh(true), runtime::RuntimeError);
        EXPECT_EQ(enabled, true);
        EXPECT_FALSE(progress.Visible());
    }
}

TEST_F(Regeneration, FailedStatementsAreJoinedAndTheRestGoesOn)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"})
        AddSong(name);
    // The marker of the statement in a title: 0xB9 in the code page.
    tests::WriteFile(Song("a.mp3"), Tagged("x\xB9"));
    tests::WriteFile(Song("b.mp3"), Tagged("y\xB9"));
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"c.mp3"}));
    EXPECT_EQ(LastRegeneration().failed, 2);
    const std::string &errors = desktop.clipboard;
    const auto second = errors.find("Error: ", 1);
    ASSERT_NE(second, std::string::npos) << errors;
    EXPECT_TRUE(errors.starts_with("Error: "));
    EXPECT_EQ(errors[second - 1], ')') << "the reasons stand one right behind the other";
    EXPECT_NE(errors.substr(0, second).find(Song("a.mp3")), std::string::npos);
    EXPECT_NE(errors.substr(second).find(Song("b.mp3")), std::string::npos);
    EXPECT_EQ(mails, 0);
}

TEST_F(Regeneration, StopEndsTheRunAtTheNextFile)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3", "d/e.mp3"})
        AddSong(name);
    tests::WriteFile(Song("a.mp3"), tests::Audio()); // a mistake, which would be asked about
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text == "Adding: b.mp3")
            catalogue::StopRegeneration();
    };
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
    EXPECT_TRUE(LastRegeneration().stopped);
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(Report().find("Directory: "), std::string::npos) << "no closing lines";
    EXPECT_NE(Report().find("a.mp3"), std::string::npos);

    desktop.doEvents = {};
    catalogue::Dirs().Clear();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b.mp3", "c.mp3", "d/e.mp3"}));
}

TEST_F(Regeneration, ACallDuringARunDoesNothing)
{
    AddSong("a.mp3");
    AddSong("b/b.mp3");
    desktop.doEvents = [] {
        if (catalogue::IsRegenerating())
            ListRefresh(false);
    };
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b/b.mp3"}));
    EXPECT_FALSE(LastRegeneration().skipped);
}

TEST_F(Regeneration, StopWithoutARunDoesNothing)
{
    AddSong("a.mp3");
    catalogue::StopRegeneration();
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
}

TEST_F(Regeneration, FolderThatVanishesDuringTheRunIsNamed)
{
    AddSong("a.mp3");
    AddSong("b/b.mp3");
    AddSong("c/c.mp3");
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text == "Adding: a.mp3")
            fs::remove_all(Song("b"));
    };
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "c/c.mp3"}));
    EXPECT_EQ(LastRegeneration().unreadableFolders, RowList{Song("b") + ": Path not found"});
}

TEST_F(Regeneration, WorksWithoutAnyControl)
{
    catalogue::TheRegenerationControls() = {};
    AddSong("a.mp3");
    ListRefresh(true);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
}

} // namespace
