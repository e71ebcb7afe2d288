#include "catalogue/regeneration/walker.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/support/asnobody.h"
#include "tests/support/fulldisk.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;
using catalogue::LastRegeneration;
using catalogue::ListRefresh;
using platform::Answer;
using tests::Regeneration;
using tests::RowList;
using tests::Tagged;

namespace
{

TEST_F(Regeneration, FailedFilesGoToTheClipboardAndTheRestIsDone)
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

TEST_F(Regeneration, UnreadableFoldersAreNamedAndTheRestIsDone)
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
        const tests::AsNobody nobody;
        ListRefresh(false);
    }
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3", "z/z.mp3"}));
    EXPECT_EQ(LastRegeneration().unreadableFolders,
              RowList{Song("closed") + ": Permission denied"});
    EXPECT_EQ(desktop.clipboard, Song("closed") + ": Permission denied\r");
    EXPECT_EQ(mails, 0);
}

// Gives the catalogue a trigger, so that a statement fails.
void AddTrigger(const std::string &catalogueFile, const char *trigger)
{
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(catalogueFile.c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, trigger, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

TEST_F(Regeneration, TableThatCannotBeEmptiedIsReportedAndTheRunContinues)
{
    AddSong("a.mp3");
    ListRefresh(false);
    fs::rename(Song("a.mp3"), Song("b.mp3"));
    AddTrigger(folder / "app/MP3s.mdb", "CREATE TRIGGER keep BEFORE DELETE ON MP3s "
                                        "BEGIN SELECT raise(ABORT, 'the rows are kept'); END");
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

constexpr const char *kRefusal =
    "CREATE TRIGGER refuse BEFORE INSERT ON MP3s WHEN NEW.Title LIKE 'refused%' "
    "BEGIN SELECT raise(ABORT, 'it is refused'); END";

TEST_F(Regeneration, FailedStatementsAreJoinedAndTheRestIsDone)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"})
        AddSong(name);
    tests::WriteFile(Song("a.mp3"), Tagged("refused"));
    tests::WriteFile(Song("b.mp3"), Tagged("refused"));
    AddTrigger(folder / "app/MP3s.mdb", kRefusal);
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"c.mp3"}));
    EXPECT_EQ(LastRegeneration().failed, 2);
    EXPECT_TRUE(LastRegeneration().rowsLost);
    const std::string &errors = desktop.clipboard;
    const auto second = errors.find("Error: ", 1);
    ASSERT_NE(second, std::string::npos) << errors;
    EXPECT_TRUE(errors.starts_with("Error: "));
    EXPECT_EQ(errors.substr(second - 2, 2), ")\r"); // each ends its line
    EXPECT_NE(errors.substr(0, second).find(Song("a.mp3")), std::string::npos);
    EXPECT_NE(errors.substr(second).find(Song("b.mp3")), std::string::npos);
    EXPECT_EQ(mails, 0);
}

TEST_F(Regeneration, ListOfFailuresIsKeptUpTo64KiB)
{
    const std::string title = "refused" + std::string(30000, 'x');
    for (int i = 100; i < 400; i++)
        tests::WriteFile(Song(std::to_string(i) + ".mp3"), Tagged(title));
    AddTrigger(folder / "app/MP3s.mdb", kRefusal);
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    const catalogue::RegenerationSummary &summary = LastRegeneration();
    EXPECT_EQ(summary.failed, 300);
    EXPECT_EQ(desktop.clipboard, summary.errors);
    EXPECT_LE(summary.errors.size(), 65536U + 30);
    EXPECT_GT(summary.errors.size(), 60000U);
    std::int64_t listed = 0;
    for (std::size_t at = 0; (at = summary.errors.find("Error: ", at)) != std::string::npos; at++)
        listed++;
    EXPECT_EQ(listed + summary.unlisted, 300);
    EXPECT_TRUE(
        summary.errors.ends_with("... and " + std::to_string(summary.unlisted) + " more\r"));
}

TEST_F(Regeneration, FailuresThatAreShownAsTheyComeGoOnNoClipboard)
{
    AddSong("a.mp3");
    fs::create_symlink("nowhere", Song("gone.mp3"));
    RowList shown;
    catalogue::TheRegenerationControls().ShowFailure = [&](const std::string &failure) {
        shown.push_back(failure);
    };
    desktop.clipboard = "mine";
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(shown, RowList{Song("gone.mp3") + ": No such file or directory\r"});
    EXPECT_EQ(desktop.clipboard, "mine");
    EXPECT_FALSE(LastRegeneration().rowsLost) << "the file, not the catalogue, is at fault";
}

;

TEST_F(Regeneration, EachSongWhoseRowWasLostIsNamedAndCounted)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"})
        AddSong(name);
    std::optional<tests::FullDisk> disk;
    desktop.doEvents = [&] {
        if (bar.Panel("Playing").text == "Adding: b.mp3" && !disk)
            disk.emplace(2000);
    };
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    disk.reset();
    const RowList kept = Paths();
    EXPECT_EQ(LastRegeneration().files, 3);
    EXPECT_EQ(LastRegeneration().failed, 3 - static_cast<int>(kept.size()));
    EXPECT_TRUE(LastRegeneration().rowsLost);
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"}) {
        const bool isKept = std::find(kept.begin(), kept.end(), name) != kept.end();
        EXPECT_NE(desktop.clipboard.find(Song(name)) != std::string::npos, isKept) << name;
    }
    EXPECT_NE(desktop.clipboard.find("Error: "), std::string::npos) << desktop.clipboard;
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

} // namespace
