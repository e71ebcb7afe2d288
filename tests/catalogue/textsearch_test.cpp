// Searches for words: the same rows whether texts were read ahead or not, and always those of the
// catalogue as it is now, whichever process has changed it.
#include "runtime/text.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/oddtexts.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace
{

using namespace catalogue;

// A connection of another program, without the functions of this one.
class StockConnection
{
public:
    explicit StockConnection(const std::string &file) { sqlite3_open(file.c_str(), &m_db); }
    ~StockConnection() { sqlite3_close(m_db); }
    StockConnection(const StockConnection &) = delete;
    StockConnection &operator=(const StockConnection &) = delete;

    void Run(const std::string &sql)
    {
        ASSERT_EQ(sqlite3_exec(m_db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(m_db);
    }

private:
    sqlite3 *m_db = nullptr;
};

class TextSearch : public testing::Test
{
protected:
    void ReadAhead()
    {
        for (int slices = 0; home.access.ReadAheadForSearches(1000); ++slices)
            ASSERT_LT(slices, 100);
    }

    // Some hundred rows of odd texts, every third with no title at all.
    void AddOddRows()
    {
        const auto texts = tests::OddTexts(1200);
        for (std::size_t i = 0; i + 4 <= texts.size(); i += 4) {
            home.Add({texts[i], texts[i + 1], texts[i + 2] + texts[i + 3], "", "", "",
                      texts[i + 1] + texts[i], "/" + std::to_string(i)});
            if (i % 12 == 0)
                home.access.ExecuteSQL("UPDATE MP3s SET Title = NULL WHERE Path = '/" +
                                           std::to_string(i) + "'",
                                       kUpdate);
        }
    }

    tests::FreshCatalogue home;
};

TEST_F(TextSearch, TheSameRowsWithTextsReadAhead)
{
    AddOddRows();
    const auto words = tests::OddTexts(400);
    std::mt19937 random(11);
    const auto term = [&](const char *column) {
        return std::string(column) + " LIKE '%" +
               runtime::Replace(words[random() % words.size()], "'", "''") + "%'";
    };
    std::vector<std::string> conditions = {
        "Title LIKE '%'",  "Title LIKE '%%'", "Title LIKE ''",  "Title LIKE '_%'",
        "Title LIKE 'a%'", "Title LIKE '%a'", "Title LIKE 'A'", "Lyrics LIKE '%a%b%'"};
    for (int i = 0; i < 200; ++i) {
        conditions.push_back(term("Title"));
        conditions.push_back(term("Title") + " OR " + term("Artist") + " AND " + term("Album"));
        conditions.push_back("(" + term("Title") + " OR " + term("Lyrics") + ") AND " +
                             term("Artist"));
    }
    std::vector<std::string> before;
    std::size_t rows = 0;
    for (const std::string &condition : conditions) {
        // With a condition that is always true, the engine itself does the search.
        before.push_back(home.Paths("(" + condition + ") AND 1 = 1"));
        rows += before.back().size();
        EXPECT_EQ(home.Paths(condition), before.back()) << condition;
    }
    EXPECT_GT(rows, 50000u); // it compared something
    ReadAhead();
    for (std::size_t i = 0; i < conditions.size(); ++i)
        EXPECT_EQ(home.Paths(conditions[i]), before[i]) << conditions[i];
}

TEST_F(TextSearch, AnOrderIsKept)
{
    for (const char *title : {"c", "a", "b"})
        home.AddPath(std::string("/") + title, title);
    EXPECT_EQ(home.Paths("Title LIKE '_' ORDER BY Title DESC"), "/c /b /a ");
    ReadAhead();
    EXPECT_EQ(home.Paths("Title LIKE '_' ORDER BY Title DESC"), "/c /b /a ");
    EXPECT_EQ(home.Paths("Title LIKE '_'"), "/c /a /b ");
}

TEST_F(TextSearch, WhatAnotherProgramWritesIsFoundAtOnce)
{
    home.AddPath("/1", "love");
    home.AddPath("/2", "war");
    StockConnection other(home.File());
    ReadAhead();
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/1 ");
    other.Run("INSERT INTO MP3s (Title, Path) VALUES ('Love again', '/3')");
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/1 /3 ");
    ReadAhead();
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/1 /3 ");
    other.Run("UPDATE MP3s SET Title = 'LOVE and war' WHERE Path = '/2'");
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/1 /2 /3 ");
    ReadAhead();
    other.Run("DELETE FROM MP3s WHERE Path = '/1'");
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 /3 ");
}

TEST_F(TextSearch, OwnChangesAreFoundAtOnce)
{
    home.AddPath("/1", "love");
    ReadAhead();
    home.AddPath("/2", "love");
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/1 /2 ");
    ReadAhead();
    home.access.ExecuteSQL("DELETE FROM MP3s WHERE Path = '/1'", kDelete);
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 ");
    ReadAhead();
    {
        const RowGroups groups;
        home.AddInStep("/3", "love"); // in a group that is still open
        EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 /3 ");
    }
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 /3 ");
    ReadAhead();
    home.access.BeginTrans();
    home.AddPath("/4", "love");
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 /3 /4 "); // the rows of this connection
    EXPECT_FALSE(home.access.ReadAheadForSearches(1000));
    home.access.RollBackTrans();
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "/2 /3 ");
}

TEST_F(TextSearch, AChangeWhileTextsAreReadBeginsAgain)
{
    for (int i = 0; i < 300; ++i)
        home.AddPath("/" + std::to_string(i), "love");
    ASSERT_TRUE(home.access.ReadAheadForSearches(0)); // a part of them
    StockConnection other(home.File());
    other.Run("UPDATE MP3s SET Title = 'hate' WHERE Path = '/0'");
    EXPECT_FALSE(home.access.ReadAheadForSearches(1000)); // gives up
    EXPECT_EQ(home.Paths("Title LIKE '%hate%'"), "/0 ");
    ReadAhead();
    EXPECT_EQ(home.Paths("Title LIKE '%hate%'"), "/0 ");
}

TEST_F(TextSearch, AResultKeepsItsRowsWhileOthersWrite)
{
    for (int i = 0; i < 20; ++i)
        home.AddPath("/" + std::to_string(i), "love " + std::to_string(i));
    ReadAhead();
    const auto records =
        Records(home.access.ExecuteSQL("SELECT * FROM MP3s WHERE Title LIKE '%love%'", kSelect));
    StockConnection other(home.File());
    other.Run("DELETE FROM MP3s");
    ASSERT_EQ(records->RecordCount(), 20);
    for (int i = 0; i < 20; ++i, records->MoveNext())
        EXPECT_EQ(records->Text("Title"), "love " + std::to_string(i));
    EXPECT_EQ(home.Paths("Title LIKE '%love%'"), "");
}

TEST_F(TextSearch, ColumnsThatAreNotReadAheadAndUnknownOnes)
{
    home.access.ExecuteSQL("INSERT INTO MP3s VALUES ('', '', '', '', '', '', '', '/1', 'DISK', 0)",
                           kInsert);
    ReadAhead();
    EXPECT_EQ(home.Paths("Disk_Label LIKE '%disk%' OR Title LIKE '%x%'"), "/1 ");
    home.access.ExecuteSQL("SELECT * FROM MP3s WHERE Nothing LIKE '%x%'", kSelect);
    EXPECT_FALSE(home.access.Succeeded);
    EXPECT_NE(home.access.ErrorMessage.find("Nothing"), std::string::npos);
}

TEST_F(TextSearch, LongTextsAndManyRows)
{
    const std::string longText(300000, 'x');
    home.Add({"long", "", "", "", "", "", longText + " needle " + longText, "/long"});
    for (int i = 0; i < 3000; ++i)
        home.Add({"t", "", "", "", "", "", "lyrics " + std::to_string(i), "/" + std::to_string(i)});
    ReadAhead();
    EXPECT_EQ(home.Paths("Lyrics LIKE '%NEEDLE%'"), "/long ");
    EXPECT_EQ(home.Paths("Lyrics LIKE '%lyrics 2999%' OR Lyrics LIKE 'lyrics 0'"), "/0 /2999 ");
    EXPECT_EQ(home.Paths("Lyrics LIKE '%xlyrics%'"),
              ""); // a text does not continue in that of the next row
}

TEST_F(TextSearch, NothingIsLeftBesideTheCatalogueAndItsFilesAreAsTheyWere)
{
    for (int i = 0; i < 50; ++i)
        home.AddPath("/" + std::to_string(i), "love");
    const auto bytes = [this] {
        std::ifstream file(home.File(), std::ios::binary);
        std::ostringstream all;
        all << file.rdbuf();
        return all.str();
    };
    const auto names = [this] {
        std::vector<std::string> found;
        for (const auto &entry : std::filesystem::directory_iterator(home.folder.Path()))
            found.push_back(entry.path().filename());
        std::sort(found.begin(), found.end());
        return found;
    };
    home.Paths("Title LIKE '%love%'");
    const auto bytesBefore = bytes();
    const auto namesBefore = names();
    ReadAhead();
    home.Paths("Title LIKE '%love%'");
    EXPECT_EQ(bytes(), bytesBefore);
    EXPECT_EQ(names(), namesBefore);
    StockConnection(home.File()).Run("SELECT * FROM MP3s; PRAGMA integrity_check");
    CloseCatalogue();
    EXPECT_EQ(std::filesystem::exists(home.File() + "-wal"), false);
}

} // namespace
