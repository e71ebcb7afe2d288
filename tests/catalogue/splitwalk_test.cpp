#include "catalogue/sqlite/splitwalk.h"
#include "catalogue/sqlite/sqlitefunctions.h"
#include "tests/support/freshcatalogue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <memory>
#include <thread>

namespace
{

using namespace catalogue;

constexpr int kRows = 24000;

class SplitWalk : public testing::Test
{
protected:
    // Rows 1, 2, ... with the titles "Song 1", "Song 2", ...
    void AddRows(const std::string &extra = "")
    {
        home.AddPath("/0"); // the file gets its log
        CloseCatalogue();
        Stock("DELETE FROM MP3s;"
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
              std::to_string(kRows) +
              ") INSERT INTO MP3s (rowid, Title, Path) SELECT i, 'Song ' || i, '/' || i FROM n;" +
              extra);
    }

    // Runs a statement as another program.
    void Stock(const std::string &sql)
    {
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(home.File().c_str(), &db), SQLITE_OK);
        sqlite3_busy_timeout(db, 10000);
        EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(db);
        sqlite3_close(db);
    }

    std::vector<std::int64_t> Found(const std::string &pattern)
    {
        SqliteHandle first(home.File()), second(home.File());
        first.ColumnsOfMP3s();
        const LikeCondition condition{{"Title"}, {}};
        const auto search = MakeLikeSearch(condition, {pattern}, first.ColumnsOfMP3s());
        EXPECT_TRUE(search.has_value());
        return FindInHalves(first, second, RowsOfMP3s(first), *search);
    }

    tests::FreshCatalogue home;
};

TEST_F(SplitWalk, FindsEveryRowOnceInTheOrderOfTheTable)
{
    AddRows();
    std::vector<std::int64_t> all(kRows);
    for (int i = 0; i < kRows; ++i)
        all[static_cast<std::size_t>(i)] = i + 1;
    EXPECT_EQ(Found("%song%"), all);
    EXPECT_EQ(Found("Song 1"), std::vector<std::int64_t>{1});
    EXPECT_EQ(Found("Song 12000"), std::vector<std::int64_t>{12000}); // the last of the lower half
    EXPECT_EQ(Found("Song 12001"), std::vector<std::int64_t>{12001});
    EXPECT_EQ(Found("Song 24000"), std::vector<std::int64_t>{24000});
    EXPECT_TRUE(Found("nothing").empty());
}

TEST_F(SplitWalk, RowsMayHaveAnyNumbers)
{
    AddRows("DELETE FROM MP3s WHERE rowid > 3;"
            "INSERT INTO MP3s (rowid, Title) VALUES (-9223372036854775808, 'Song a'), "
            "(9223372036854775807, 'Song b'), (-1, 'Song c'), (0, 'Song d')");
    constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(Found("song%"), (std::vector<std::int64_t>{kLeast, -1, 0, 1, 2, 3, kMost}));
}

TEST_F(SplitWalk, RowsOfATable)
{
    AddRows();
    SqliteHandle handle(home.File());
    EXPECT_EQ(RowsOfMP3s(handle).first, 1);
    EXPECT_EQ(RowsOfMP3s(handle).last, kRows);
    Stock("DELETE FROM MP3s");
    EXPECT_GT(RowsOfMP3s(handle).first, RowsOfMP3s(handle).last);
}

TEST(IsWorthSplitting, OnlyManyRowsOnSeveralProcessors)
{
    const bool several = std::thread::hardware_concurrency() > 1;
    EXPECT_FALSE(IsWorthSplitting({0, -1}));
    EXPECT_FALSE(IsWorthSplitting({1, 1000}));
    EXPECT_EQ(IsWorthSplitting({1, 100000}), several);
    EXPECT_EQ(IsWorthSplitting({std::numeric_limits<std::int64_t>::min(),
                                std::numeric_limits<std::int64_t>::max()}),
              several);
}

TEST_F(SplitWalk, AnErrorOfEitherHalfIsReported)
{
    AddRows();
    SqliteHandle first(home.File()), second(home.File());
    const LikeSearch search =
        MakeLikeSearch({{"Title"}, {}}, {"%song%"}, first.ColumnsOfMP3s()).value();
    for (SqliteHandle *failing : {&first, &second}) {
        sqlite3_progress_handler(
            failing->Db(), 1000, [](void *) { return 1; }, nullptr);
        EXPECT_THROW(static_cast<void>(FindInHalves(first, second, {1, kRows}, search)),
                     ProviderFailure);
        sqlite3_progress_handler(failing->Db(), 0, nullptr, nullptr);
    }
    EXPECT_EQ(FindInHalves(first, second, {1, kRows}, search).size(), kRows);
}

// A song that another program moves between the first and the last row is found exactly once by
// every search: both halves see the same state.
TEST_F(SplitWalk, BothHalvesSeeTheSameStateWhileAnotherProgramWrites)
{
    AddRows("UPDATE MP3s SET Title = 'wanderer' WHERE rowid = 1");
    std::atomic<bool> ended = false;
    std::atomic<int> moves = 0;
    std::thread other([&] {
        while (!ended) {
            Stock("BEGIN IMMEDIATE;"
                  "UPDATE MP3s SET Title = 'x' WHERE rowid = 1;"
                  "UPDATE MP3s SET Title = 'wanderer' WHERE rowid = " +
                  std::to_string(kRows) + ";COMMIT");
            Stock("BEGIN IMMEDIATE;"
                  "UPDATE MP3s SET Title = 'wanderer' WHERE rowid = 1;"
                  "UPDATE MP3s SET Title = 'x' WHERE rowid = " +
                  std::to_string(kRows) + ";COMMIT");
            ++moves;
        }
    });
    int first = 0, last = 0;
    for (int i = 0; i < 4000 && (i < 100 || moves < 50); ++i) {
        const std::string found = home.Paths("Title LIKE '%wanderer%'");
        if (found == "/1 ")
            ++first;
        else if (found == "/" + std::to_string(kRows) + " ")
            ++last;
        else
            ADD_FAILURE() << "found \"" << found << '"';
    }
    ended = true;
    other.join();
    EXPECT_GT(first + last, 99);
    EXPECT_GE(moves, 50);
}

} // namespace
