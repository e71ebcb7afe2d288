// Statements that share one walk over the songs: the same rows as without it, always those of the
// catalogue as it is now, and the songs are read once.
#include "catalogue/sqlite/cataloguefile.h"
#include "catalogue/sqlite/opengroup.h"
#include "tests/support/faultycalls.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/oddtexts.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

namespace
{

using namespace catalogue;

const std::vector<std::string> kColumns = {"Title", "Artist", "Album", "Year", "Comment", "Genre"};

class SharedWalk : public testing::Test
{
protected:
    static constexpr int kRows = 200;

    // Rows of odd texts, some of them nulls. With `longLyrics` each has a page of the file.
    void AddOddRows(bool longLyrics = false)
    {
        const auto texts = tests::OddTexts(kRows);
        const std::string lyrics(longLyrics ? 5000 : 10, 'l');
        for (std::size_t i = 0; i < texts.size(); ++i)
            home.Add({texts[i], texts[i * 7 % texts.size()], texts[i / 3],
                      texts[i * 3 % texts.size()], texts[i / 2], texts[i % 5], lyrics,
                      "/" + std::to_string(i)});
        for (const std::string &column : kColumns)
            home.access.ExecuteSQL("UPDATE MP3s SET " + column + " = NULL WHERE Path LIKE '%7'",
                                   kUpdate);
    }

    // The rows of the statement of each column, one after the other.
    std::vector<std::vector<std::string>> AllSorted()
    {
        std::vector<std::vector<std::string>> sorted;
        for (const std::string &column : kColumns)
            sorted.push_back(home.Rows("SELECT * FROM MP3s ORDER BY " + column));
        return sorted;
    }

    // The pieces of the file that the statements of all columns read, each only its own column.
    int PiecesRead()
    {
        const tests::FaultyCalls calls(0, false);
        for (const std::string &column : kColumns)
            Records(home.access.ExecuteSQL("SELECT * FROM MP3s ORDER BY " + column, kSelect));
        return calls.Calls();
    }

    // Runs a statement as another program.
    void RunElsewhere(const char *sql)
    {
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(home.File().c_str(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }

    std::string FirstTitle()
    {
        return home.Rows("SELECT * FROM MP3s ORDER BY Title").at(0).substr(0, 3);
    }

    tests::FreshCatalogue home;
};

TEST_F(SharedWalk, GivesTheSameRows)
{
    AddOddRows();
    const auto alone = AllSorted();
    home.access.ShareScan(kColumns);
    EXPECT_EQ(AllSorted(), alone);
    EXPECT_EQ(AllSorted(), alone); // each column was read for one statement
    home.access.ShareScan({"genre", "YEAR"});
    EXPECT_EQ(AllSorted(), alone);
    home.access.ShareScan({"Nowhere", "Title"});
    EXPECT_EQ(AllSorted(), alone);
}

TEST_F(SharedWalk, OtherStatementsReadForThemselves)
{
    AddOddRows();
    const std::vector<std::string> statements = {
        "SELECT * FROM MP3s ORDER BY Title DESC", "SELECT * FROM MP3s ORDER BY Title, Artist",
        "SELECT * FROM MP3s WHERE Year LIKE '%a%' ORDER BY Title", "SELECT * FROM MP3s",
        "SELECT Title FROM MP3s ORDER BY Title"};
    std::vector<std::vector<std::string>> alone;
    for (const std::string &statement : statements)
        alone.push_back(home.Rows(statement));
    home.access.ShareScan({"Title", "Artist"});
    for (std::size_t i = 0; i < statements.size(); ++i)
        EXPECT_EQ(home.Rows(statements[i]), alone[i]) << statements[i];
}

TEST_F(SharedWalk, ReadsTheSongsOnce)
{
    AddOddRows(true);
    CloseCatalogue(); // the songs are in the file now, not in its log
    EXPECT_GT(PiecesRead(), 6 * kRows);
    home.access.ShareScan(kColumns);
    EXPECT_LT(PiecesRead(), 2 * kRows);
    home.access.ShareScan(kColumns);
    home.access.ShareScan({});
    EXPECT_GT(PiecesRead(), 6 * kRows);
}

TEST_F(SharedWalk, WalksKeepFewPagesAndTheTextsTakeTheirMemory)
{
    const auto bytesKept = [](SqliteHandle &handle) {
        int now = 0, most = 0;
        EXPECT_EQ(sqlite3_db_status(handle.Db(), SQLITE_DBSTATUS_CACHE_USED, &now, &most, 0),
                  SQLITE_OK);
        return now;
    };
    constexpr int kMany = 1 << 20, kFew = 1 << 19;
    AddOddRows(true);
    const auto file = CatalogueFile::At(home.File());
    EXPECT_GT(bytesKept(file->Main()), kMany);
    home.Rows("SELECT * FROM MP3s ORDER BY Lyrics");
    auto reader = file->TakeHandle();     // the one that has read the rows
    EXPECT_GT(bytesKept(*reader), kMany); // they were read one by one, after the walk
    file->ReturnHandle(reader);
    home.access.ShareScan(kColumns);
    EXPECT_LT(bytesKept(file->Main()), kFew);
    EXPECT_LT(bytesKept(*reader), kFew);
    Records(home.access.ExecuteSQL("SELECT * FROM MP3s ORDER BY Lyrics", kSelect));
    EXPECT_LT(bytesKept(*reader), kFew);
}

TEST_F(SharedWalk, AChangeIsSeenByTheNextStatement)
{
    home.AddPath("/1", "one");
    home.AddPath("/2", "two");
    home.access.ShareScan(kColumns);
    EXPECT_EQ(home.Rows("SELECT * FROM MP3s ORDER BY Artist").size(), 2U);
    home.access.ExecuteSQL("UPDATE MP3s SET Title = 'abc' WHERE Path = '/2'", kUpdate);
    EXPECT_EQ(FirstTitle(), "abc");

    home.access.ShareScan(kColumns);
    EXPECT_EQ(home.Rows("SELECT * FROM MP3s ORDER BY Artist").size(), 2U);
    RunElsewhere("UPDATE MP3s SET Title = 'aaa' WHERE Path = '/1'");
    EXPECT_EQ(FirstTitle(), "aaa");

    RunElsewhere("DELETE FROM MP3s");
    EXPECT_TRUE(home.Rows("SELECT * FROM MP3s ORDER BY Album").empty());
}

TEST_F(SharedWalk, EndsWithTheCatalogue)
{
    AddOddRows();
    const auto alone = AllSorted();
    home.access.ShareScan(kColumns);
    EXPECT_FALSE(home.Rows("SELECT * FROM MP3s ORDER BY Title").empty());
    CloseCatalogue();
    EXPECT_FALSE(std::filesystem::exists(home.File() + "-wal")) << "the file alone is whole";
    EXPECT_EQ(AllSorted(), alone);
    std::filesystem::remove(home.File());
    home.access.ShareScan(kColumns);
    home.access.ExecuteSQL("SELECT * FROM MP3s ORDER BY Title", kSelect);
    EXPECT_FALSE(home.access.Succeeded);
}

// A piece of the file that cannot be read fails the statements that need it, no other one, and with
// the words of each.
TEST_F(SharedWalk, AFailureIsThatOfAStatement)
{
    AddOddRows(true);
    const auto alone = AllSorted();
    int failures = 0;
    bool hasFailed = true;
    for (int failing = 1; hasFailed; ++failing) {
        CloseCatalogue();
        const tests::FaultyCalls calls(failing, false);
        home.access.ShareScan(kColumns);
        for (std::size_t i = 0; i < kColumns.size(); ++i) {
            const auto records = Records(
                home.access.ExecuteSQL("SELECT * FROM MP3s ORDER BY " + kColumns[i], kSelect));
            if (!home.access.Succeeded) {
                ++failures;
                EXPECT_NE(home.access.ErrorMessage, "");
                continue;
            }
            EXPECT_EQ(records->RecordCount(), static_cast<std::int64_t>(alone[i].size()));
        }
        hasFailed = calls.HasFailed();
    }
    EXPECT_EQ(AllSorted(), alone);
    EXPECT_GT(failures, 0);
}

} // namespace
