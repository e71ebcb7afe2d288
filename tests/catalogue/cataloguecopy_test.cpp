#include "catalogue/adoclass.h"
#include "catalogue/regeneration/walker.h"
#include "catalogue/sqlite/cataloguecopy.h"
#include "platform/posix/disk/systemfiles.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace
{

namespace fs = std::filesystem;

struct CatalogueCopy : tests::Regeneration {
    CatalogueCopy() : backup(folder / "app/Backup") {}

    tests::RowList Copies() const
    {
        tests::RowList names;
        if (fs::exists(backup))
            for (const auto &entry : fs::directory_iterator(backup))
                names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    // The titles in a copy, and whether the engine's check finds no error in it.
    static tests::RowList TitlesIn(const std::string &path)
    {
        tests::RowList titles;
        sqlite3 *db = nullptr;
        EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        const auto collect = [](void *to, int, char **values, char **) {
            static_cast<tests::RowList *>(to)->emplace_back(values[0] != nullptr ? values[0] : "");
            return 0;
        };
        tests::RowList check;
        EXPECT_EQ(sqlite3_exec(db, "PRAGMA integrity_check", collect, &check, nullptr), SQLITE_OK);
        EXPECT_EQ(check, tests::RowList{"ok"});
        EXPECT_EQ(
            sqlite3_exec(db, "SELECT Title FROM MP3s ORDER BY Title", collect, &titles, nullptr),
            SQLITE_OK);
        sqlite3_close(db);
        return titles;
    }

    void Run(bool deleteFirst)
    {
        shell::TheGlobals().MP3Directory = Music();
        shell::TheGlobals().DeleteBeforeAppend = deleteFirst;
        catalogue::Dirs().Clear();
        catalogue::ListRefresh(false);
    }

    std::string backup;
};

TEST_F(CatalogueCopy, IsMadeBeforeTheTableIsEmptied)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    Run(true);
    EXPECT_EQ(Copies(), tests::RowList()); // there was nothing to lose
    fs::remove(Song("a.mp3"));
    Run(true);
    EXPECT_EQ(Paths(), tests::RowList{"b.mp3"});
    EXPECT_EQ(Copies(), tests::RowList{"MP3s 2026-03-05 07-08-09.mdb"});
    EXPECT_EQ(TitlesIn(backup + "/" + Copies()[0]), (tests::RowList{"a.mp3", "b.mp3"}));
}

TEST_F(CatalogueCopy, IsNotMadeWhereNothingIsDeleted)
{
    AddSong("a.mp3");
    Run(false);
    Run(false);
    EXPECT_EQ(Copies(), tests::RowList());
}

TEST_F(CatalogueCopy, TheLastThreeAreKept)
{
    AddSong("a.mp3");
    Run(false);
    tests::WriteFile(backup + "/song.mp3", "a song's copy stays");
    for (int second = 10; second < 15; second++) {
        clock.now.second = second;
        Run(true);
    }
    EXPECT_EQ(Copies(),
              (tests::RowList{"MP3s 2026-03-05 07-08-12.mdb", "MP3s 2026-03-05 07-08-13.mdb",
                              "MP3s 2026-03-05 07-08-14.mdb", "song.mp3"}));
}

TEST_F(CatalogueCopy, TwoOfOneSecondAreBothKept)
{
    AddSong("a.mp3");
    Run(false);
    Run(true);
    Run(true);
    EXPECT_EQ(Copies(),
              (tests::RowList{"MP3s 2026-03-05 07-08-09.mdb", "MP3s 2026-03-05 07-08-09_2.mdb"}));
}

TEST_F(CatalogueCopy, AFolderThatIsNotThereFailsBeforeAnything)
{
    AddSong("a.mp3");
    Run(false);
    fs::remove_all(Music());
    EXPECT_THROW(Run(true), runtime::RuntimeError);
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_EQ(Copies(), tests::RowList());
}

// A disk that fails in one call.
struct FailingFiles : platform::posix::SystemFilesPort {
    FailingFiles() { platform::TheMachine().files = this; }
    ~FailingFiles() override { platform::TheMachine().files = &platform::SystemFiles(); }
    int Fail(const char *call) const { return call == failing ? EIO : 0; }
    int CreateBeside(const std::string &path, std::string &temporary) override
    {
        return Fail("create") != 0 ? -EIO : SystemFilesPort::CreateBeside(path, temporary);
    }
    int Flush(int handle) override
    {
        return Fail("flush") != 0 ? EIO : SystemFilesPort::Flush(handle);
    }
    int Rename(const std::string &from, const std::string &to) override
    {
        return Fail("rename") != 0 ? EIO : SystemFilesPort::Rename(from, to);
    }
    int MakeFolder(const std::string &path) override
    {
        return Fail("folder") != 0 ? EIO : SystemFilesPort::MakeFolder(path);
    }
    std::string failing;
};

TEST_F(CatalogueCopy, WithoutACopyNothingIsDeleted)
{
    AddSong("a.mp3");
    Run(false);
    fs::remove(Song("a.mp3"));
    AddSong("b.mp3");
    for (const char *call : {"folder", "create", "flush", "rename"}) {
        SCOPED_TRACE(call);
        FailingFiles files;
        files.failing = call;
        desktop.ExpectBox("Some files could not be added", platform::Answer::No);
        Run(true);
        EXPECT_EQ(Paths(), (tests::RowList{"a.mp3", "b.mp3"}));
        EXPECT_NE(desktop.clipboard.find("Backup"), std::string::npos) << desktop.clipboard;
        EXPECT_EQ(Copies(), tests::RowList());
    }
}

} // namespace
