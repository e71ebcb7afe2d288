#include "catalogue/regeneration/walker.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"

#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
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

TEST_F(Regeneration, RowsThatCouldNotBeKeptAreTold)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    desktop.doEvents = [&] {
        const struct rlimit small = {2000, before.rlim_max};
        if (bar.Panel("Playing").text == "Adding: b.mp3")
            setrlimit(RLIMIT_FSIZE, &small);
    };
    desktop.ExpectBox("Some files could not be added.", Answer::No);
    ListRefresh(false);
    setrlimit(RLIMIT_FSIZE, &before);
    const RowList kept = Paths();
    if (kept.empty()) { // both stood in one group
        EXPECT_NE(desktop.clipboard.find("2 row(s) could not be kept\r"), std::string::npos)
            << desktop.clipboard;
    } else { // the machine was slow, and the first one went in alone
        EXPECT_EQ(kept, RowList{"a.mp3"});
        EXPECT_NE(desktop.clipboard.find("INSERT INTO MP3s"), std::string::npos);
    }
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
