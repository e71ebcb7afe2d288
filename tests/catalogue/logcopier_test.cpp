// The log is copied into the catalogue while rows are still written: nothing is lost, and after the
// end of the program the file is complete without its log.
#include "catalogue/sqlite/logcopier.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/fulldisk.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>

using namespace catalogue;
using tests::WaitUntil;
namespace fs = std::filesystem;

namespace
{

// The number of songs in the file alone, without its log; -1 when it cannot be read so. Asked in
// another process: closing the file here would drop the locks of the connections.
int SongsInFileAlone(const std::string &file)
{
    const std::string command =
        "sqlite3 'file:" + file + "?immutable=1' 'SELECT count(*) FROM MP3s' 2>/dev/null";
    std::FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return -1;
    std::array<char, 32> text{};
    const bool isRead = std::fgets(text.data(), text.size(), pipe) != nullptr;
    return pclose(pipe) == 0 && isRead ? std::atoi(text.data()) : -1;
}

class LogCopying : public testing::Test
{
protected:
    LogCopying() { TheGroupLimits() = {0, std::numeric_limits<std::int64_t>::max()}; }
    ~LogCopying() override { TheGroupLimits() = {}; }

    bool HasLog() const { return fs::exists(fresh.File() + "-wal"); }

    tests::FreshCatalogue fresh;
};

// What another program reads: the number of rows, and whether the file is intact.
struct Seen {
    int rows = -1;
    std::string check;
};

Seen Look(const std::string &file)
{
    Seen seen;
    sqlite3 *db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    const auto ask = [&](const char *sql) {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
        const auto *text = sqlite3_step(statement) == SQLITE_ROW
                               ? reinterpret_cast<const char *>(sqlite3_column_text(statement, 0))
                               : nullptr;
        std::string answer = text != nullptr ? text : "";
        sqlite3_finalize(statement);
        return answer;
    };
    seen.rows = std::atoi(ask("SELECT count(*) FROM MP3s").c_str());
    seen.check = ask("PRAGMA integrity_check");
    sqlite3_close(db);
    return seen;
}

TEST_F(LogCopying, RowsAreInTheFileWhileTheRunGoesOn)
{
    const RowGroups groups;
    int rows = 0;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 20; ++i)
            fresh.AddInStep("/" + std::to_string(rows++));
        const int wanted = rows;
        EXPECT_TRUE(WaitUntil([&] {
            fresh.AddInStep("/" + std::to_string(rows++)); // a copy may have begun before the last
            return SongsInFileAlone(fresh.File()) >= wanted;
        }));
        EXPECT_TRUE(HasLog());
    }
    CloseCatalogue();
    EXPECT_FALSE(HasLog());
    EXPECT_EQ(SongsInFileAlone(fresh.File()), rows);
    EXPECT_EQ(Look(fresh.File()).check, "ok");
}

TEST_F(LogCopying, TheEndWaitsForTheCopyAndLeavesOneFile)
{
    for (int round = 0; round < 20; ++round) {
        {
            const RowGroups groups;
            for (int i = 0; i < 5; ++i)
                fresh.AddInStep("/" + std::to_string(round * 5 + i), std::string(20'000, 'x'));
        }
        CloseCatalogue(); // a copy has just begun
        ASSERT_FALSE(HasLog());
        ASSERT_EQ(SongsInFileAlone(fresh.File()), (round + 1) * 5);
    }
}

TEST_F(LogCopying, OnAFullDiskTheRowsStayInTheLog)
{
    TheGroupLimits().groupMs = std::numeric_limits<std::int64_t>::max();
    RowGroups groups;
    for (int i = 0; i < 6; ++i)
        fresh.AddInStep("/" + std::to_string(i), std::string(7'000, 'x'));
    // There is room for the log, but not for the longer file.
    std::optional<tests::FullDisk> disk(80'000);
    TheGroupLimits().groupMs = 0;
    std::string lost = "not said";
    groups.WhenSettled([&](const std::string &words) { lost = words; });
    groups.Close();
    EXPECT_EQ(lost, "");
    CloseCatalogue();
    EXPECT_TRUE(HasLog());
    EXPECT_LE(fs::file_size(fresh.File()), 80'000U);
    disk.reset();
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"6"});
    CloseCatalogue();
    EXPECT_FALSE(HasLog());
    EXPECT_EQ(SongsInFileAlone(fresh.File()), 6);
}

TEST_F(LogCopying, AnotherProgramCanReadAndWriteMeanwhile)
{
    sqlite3 *other = nullptr;
    ASSERT_EQ(sqlite3_open(fresh.File().c_str(), &other), SQLITE_OK);
    sqlite3_busy_timeout(other, 60'000);
    {
        const RowGroups groups;
        for (int i = 0; i < 200; ++i) {
            fresh.AddInStep("/" + std::to_string(i));
            ASSERT_EQ(sqlite3_exec(other, "INSERT INTO Lists VALUES ('a', 'b')", nullptr, nullptr,
                                   nullptr),
                      SQLITE_OK)
                << sqlite3_errmsg(other);
        }
    }
    CloseCatalogue();
    EXPECT_TRUE(HasLog()) << "the other program has it open";
    sqlite3_close(other);
    EXPECT_FALSE(HasLog());
    EXPECT_EQ(fresh.Rows("SELECT count(*), (SELECT count(*) FROM Lists) FROM MP3s"),
              std::vector<std::string>{"200|200"});
}

TEST_F(LogCopying, NothingIsCopiedIntoAFileThatTookTheCataloguesPlace)
{
    const std::string next = fresh.folder / "next.mdb";
    fs::copy_file(tests::ShippedCatalogue(), next);
    const std::string before = tests::ReadFile(next);
    {
        const RowGroups groups;
        for (int i = 0; i < 30; ++i)
            fresh.AddInStep("/" + std::to_string(i));
        fs::rename(next, fresh.File());
        for (const char *part : {"-wal", "-shm"})
            fs::remove(fresh.File() + part);
        fresh.Rows("SELECT * FROM Lists"); // notices it
    }
    CloseCatalogue();
    EXPECT_EQ(tests::ReadFile(fresh.File()), before);
}

TEST_F(LogCopying, NothingIsCopiedAfterItWasAbandoned)
{
    TheGroupLimits().groupMs = std::numeric_limits<std::int64_t>::max();
    fresh.AddPath("/1");
    {
        LogCopier copier(fresh.File());
        copier.Abandon();
        copier.Start();
    }
    EXPECT_EQ(SongsInFileAlone(fresh.File()), 0);
    {
        LogCopier copier(fresh.File());
        copier.Start();
    }
    EXPECT_EQ(SongsInFileAlone(fresh.File()), 1);
    LogCopier(fresh.folder / "absent.mdb").Start();
    EXPECT_FALSE(fs::exists(fresh.folder / "absent.mdb"));
}

} // namespace
