#include "runtime/text.h"
#include "tests/support/freshcatalogue.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

std::vector<std::string> Paths(tests::FreshCatalogue &fresh, const std::string &pattern,
                               const std::string &excluded)
{
    const auto records = Records(fresh.access.ExecuteSQL("SEL_ByPath", kStoredSelect,
                                                         std::vector<Value>{pattern, excluded}));
    EXPECT_TRUE(fresh.access.Succeeded) << fresh.access.ErrorMessage;
    return tests::Column(*records, "Path");
}

// The names of a table's columns, as another program reads them, with a blank after each.
std::string ColumnsOf(const std::string &file, const std::string &table)
{
    sqlite3 *db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt *statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, ("SELECT * FROM " + table).c_str(), -1, &statement, nullptr),
              SQLITE_OK);
    std::string names;
    for (int i = 0; i < sqlite3_column_count(statement); ++i)
        names.append(sqlite3_column_name(statement, i)).append(" ");
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return names;
}

} // namespace

TEST(ShippedFile, TablesAndQueries)
{
    tests::FreshCatalogue fresh;
    EXPECT_EQ(fresh.Rows("SELECT * FROM Validations"),
              std::vector<std::string>{
                  "1.6.6|https://quenlin.example/|VersionInfo.txt|DBVersionInfo.txt"});
    EXPECT_EQ(fresh.Rows("SELECT count(*), min(ID), max(ID) FROM Genre"),
              std::vector<std::string>{"126|0|125"});
    EXPECT_EQ(fresh.Rows("SELECT Name FROM Genre WHERE ID = 17"), std::vector<std::string>{"Rock"});
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM StoredQueries"), std::vector<std::string>{"11"});
    const std::pair<std::string, std::string> tables[] = {
        {"MP3s", "Title Artist Album Year Comment Genre Lyrics Path Disk_Label Duplicated "},
        {"Genre", "ID Name "},
        {"Lists", "LIST_Name LIST_Path "},
        {"Validations", "Version URL2Check VersionCheck DBCheck "}};
    for (const auto &[table, want] : tables) {
        EXPECT_EQ(ColumnsOf(fresh.File(), table), want);
    }
    const auto records = Records(fresh.access.ExecuteSQL("SELECT * FROM MP3s", kSelect));
    EXPECT_EQ(records->FindField("title"), 0);
    EXPECT_EQ(records->FindField("x"), -1);
    EXPECT_FALSE(std::filesystem::exists(tests::ShippedCatalogue() + "-wal")) << "whole alone";
}

// A look-up with the values of a song also returns which rows have these values.
TEST(SelByPath, ComparesTheRowsWithAFurtherSetOfValues)
{
    tests::FreshCatalogue fresh;
    const std::string nul("a\0b", 3);
    fresh.Add({"T\xC3\xAF'\"", "A", "L", "1999", "", "Rock", nul, "/same"});
    fresh.Add({"T\xC3\xAF'\"", "other", "L", "1999", "", "Rock", nul, "/same"}, 1);
    fresh.Add({"t\xC3\xAF'\"", "A", "L", "1999", "", "Rock", nul, "/letter case"});
    fresh.Add({"T\xC3\xAF'\"", "other", "L", "1999", "", "Rock", nul, "/artist"});
    fresh.Add({"T\xC3\xAF'\"", "A", "L", "1999", "", "Rock", "a", "/lyrics"}, 1);
    fresh.Add({"T\xC3\xAF'\"", "A", "L", "1999", "", "Rock", nul, "/null"});
    fresh.Add({"T\xC3\xAF'\"", "A", "L", "1999", "", "Rock", nul, "/bytes"});
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(fresh.File().c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db,
                           "UPDATE MP3s SET Comment = NULL WHERE Path = '/null';"
                           "UPDATE MP3s SET Album = CAST(Album AS BLOB) WHERE Path = '/bytes'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    const std::pair<std::string, std::vector<std::string>> cases[] = {{"/same", {"0|1", "1|1"}},
                                                                      {"/letter case", {"0|0"}},
                                                                      {"/artist", {"0|0"}},
                                                                      {"/lyrics", {"1|0"}},
                                                                      {"/null", {"0|0"}},
                                                                      {"/bytes", {"0|1"}},
                                                                      {"/absent", {}}};
    for (const auto &[path, want] : cases)
        EXPECT_EQ(fresh.Stored("SEL_ByPath",
                               std::vector<Value>{path, std::string(kNoExclusion), "T\xC3\xAF'\""s,
                                                  "A"s, "L"s, "1999"s, ""s, "Rock"s, nul}),
                  want)
            << path;
    EXPECT_EQ(fresh.Stored("SEL_ByPath", std::vector<Value>{"/lyrics"s, std::string(kNoExclusion)}),
              std::vector<std::string>{"T\xC3\xAF'\"|A|L|1999||Rock|a|/lyrics||1"});
}

TEST(ShippedFile, APathIsFoundByItsIndex)
{
    const tests::FreshCatalogue fresh;
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(fresh.File().c_str(), &db), SQLITE_OK);
    const auto first = [&](const std::string &sql, int column) {
        sqlite3_stmt *statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sqlite3_errmsg(db);
        EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
        const std::string text =
            reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
        sqlite3_finalize(statement);
        return text;
    };
    const auto plan = [&](const std::string &sql) { return first("EXPLAIN QUERY PLAN " + sql, 3); };
    const std::string want = "SEARCH MP3s USING INDEX MP3sByPath (Path=?)";
    for (const char *name : {"SEL_ByPath", "Edit1", "Edit2"})
        EXPECT_EQ(plan(first("SELECT COALESCE(WholePath, Statement) FROM StoredQueries WHERE Name "
                             "= '" +
                                 std::string(name) + "'",
                             0)),
                  want)
            << name;
    EXPECT_EQ(plan("UPDATE MP3s SET Path = ?1 WHERE Path = ?2"), want);
    sqlite3_close(db);
}

TEST(Edit, ReachesDuplicatesButNotTheirArtists)
{
    tests::FreshCatalogue fresh;
    fresh.Add({"t", "a", "al", "1", "c", "g", "l", "/p"});
    fresh.Add({"t", "b", "al", "1", "c", "g", "l", "/p"}, 1);
    fresh.Add({"t", "c", "al", "1", "c", "g", "l", "/p"}, 1);
    fresh.Add({"t", "a", "al", "1", "c", "g", "l", "/other"});
    const std::vector<Value> first{"T"s, "A"s, "AL"s, "2"s, "C"s, "G"s, "L"s, "/p"s};
    const std::vector<Value> second{"T"s, "AL"s, "2"s, "C"s, "G"s, "L"s, "/p"s};
    for (int round = 0; round < 2; ++round) { // the second one finds everything as it should be
        fresh.access.ExecuteSQL("Edit1", kStoredUpdate, first);
        fresh.access.ExecuteSQL("Edit2", kStoredUpdate, second);
        EXPECT_TRUE(fresh.access.Succeeded);
        EXPECT_EQ(fresh.Rows("SELECT * FROM MP3s"),
                  (std::vector<std::string>{"T|A|AL|2|C|G|L|/p||0", "T|b|AL|2|C|G|L|/p||1",
                                            "T|c|AL|2|C|G|L|/p||1", "t|a|al|1|c|g|l|/other||0"}));
    }
    fresh.access.ExecuteSQL("UPDATE MP3s SET Path = ? WHERE Path = ?", kUpdate,
                            std::vector<Value>{"/q's"s, "/p"s});
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s WHERE Path = '/q''s'"),
              std::vector<std::string>{"3"});
}

TEST(Edit, TheSecondLeavesTheFilesOwnRowAlone)
{
    tests::FreshCatalogue fresh;
    fresh.Add({"t", "a", "al", "1", "c", "g", "l", "/p"});
    fresh.Add({"t", "b", "al", "1", "c", "g", "l", "/p"}, 1);
    fresh.access.ExecuteSQL("Edit2", kStoredUpdate,
                            std::vector<Value>{"T"s, "AL"s, "2"s, "C"s, "G"s, "L"s, "/p"s});
    EXPECT_EQ(fresh.Rows("SELECT * FROM MP3s"),
              (std::vector<std::string>{"t|a|al|1|c|g|l|/p||0", "T|b|AL|2|C|G|L|/p||1"}));
}

TEST(SelByPath, ExactPath)
{
    tests::FreshCatalogue fresh;
    for (const char *path : {"/m/a_b.mp3", "/m/aXb.mp3", "/m/A_B.mp3", "/m/100%.mp3", "/m/100x.mp3",
                             "/x/m/a_b.mp3", "/m/a_b.mp3x", "/m/it's.mp3", "/m/\xFF.mp3", "/m/%"})
        fresh.AddPath(path);
    for (const char *path :
         {"/m/a_b.mp3", "/m/A_B.mp3", "/m/100%.mp3", "/m/it's.mp3", "/m/\xFF.mp3", "/m/%"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(Paths(fresh, path, "·"), std::vector<std::string>{path});
    }
    EXPECT_TRUE(Paths(fresh, "/m/A_b.mp3", "·").empty());
    EXPECT_TRUE(Paths(fresh, "m/a_b.mp3x/", "·").empty());
}

TEST(SelByPath, FolderWithoutItsSubfolders)
{
    tests::FreshCatalogue fresh;
    for (const char *path :
         {"/Músic/A_b/z.mp3", "/Músic/A_b/1.mp3", "/Músic/A_b/sub/2.mp3", "/Músic/AXb/3.mp3",
          "/Músic/A_b2/4.mp3", "/x/Músic/A_b/5.mp3", "/Músic/100%/6.mp3", "/Músic/100%/s/7.mp3",
          "/MÚSIC/a_B/0.MP3", "/8.mp3"})
        fresh.AddPath(path);
    EXPECT_EQ(
        Paths(fresh, "/MÚSIC/A_B/%", "/MÚSIC/A_B/%/%"),
        (std::vector<std::string>{"/MÚSIC/a_B/0.MP3", "/Músic/A_b/1.mp3", "/Músic/A_b/z.mp3"}));
    EXPECT_EQ(Paths(fresh, "/MÚSIC/100%/%", "/MÚSIC/100%/%/%"),
              std::vector<std::string>{"/Músic/100%/6.mp3"});
    EXPECT_EQ(Paths(fresh, "/%", "/%/%"), std::vector<std::string>{"/8.mp3"});
}

TEST(SelByPath, FileNameInAnyFolder)
{
    tests::FreshCatalogue fresh;
    for (const char *path : {"/a/Song_1.mp3", "/b/sub/SONG_1.MP3.bak", "/a/SongX1.mp3",
                             "/a/MySong_1.mp3", "/Song_1.mp3/other.mp3"})
        fresh.AddPath(path);
    EXPECT_EQ(Paths(fresh, "song_1.mp3%", "·"),
              (std::vector<std::string>{"/a/Song_1.mp3", "/b/sub/SONG_1.MP3.bak"}));
    EXPECT_EQ(Paths(fresh, "X1.mp3", "·"), std::vector<std::string>{"/a/SongX1.mp3"})
        << "without a wildcard the path ends so";
}

TEST(SelBy, EveryValueNodeListsTheRowsThatMadeIt)
{
    const std::string pieces[] = {"a", "A", " ", "\0"s, "é",    "É",     "ñ", "ß", "ẞ",
                                  "'", "%", "_", "?",   "\xFF", "x\r\n", "ı", "I", "i"};
    std::mt19937 random(3);
    tests::FreshCatalogue fresh;
    constexpr const char *kFields[] = {"Title", "Artist", "Album", "Year", "Comment", "Genre"};
    for (int row = 0; row < 150; ++row) {
        std::array<std::string, 8> fields;
        for (int i = 0; i < 6; ++i)
            for (auto length = random() % 4; length > 0; --length)
                fields[static_cast<std::size_t>(i)] += pieces[random() % std::size(pieces)];
        fields[7] = "/" + std::to_string(row);
        fresh.Add(fields);
    }
    fresh.access.ExecuteSQL("UPDATE MP3s SET Title = NULL, Genre = NULL WHERE Path = '/7'",
                            kUpdate);
    for (const std::string field : kFields) {
        SCOPED_TRACE(field);
        std::map<std::string, std::set<std::string>> nodes; // key to paths
        const auto all = Records(fresh.access.ExecuteSQL("SELECT * FROM MP3s", kSelect));
        for (; !all->AtEnd(); all->MoveNext())
            nodes[runtime::UpperText(runtime::Trim(all->Text(field)))].emplace(all->Text("Path"));
        for (const auto &[key, paths] : nodes) {
            const auto records =
                Records(fresh.access.ExecuteSQL("SEL_By" + field, kStoredSelect, Value(key)));
            const auto found = tests::Column(*records, "Path");
            EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), paths) << key;
            EXPECT_EQ(found.size(), paths.size()) << key;
        }
    }
}

TEST(SelBy, RowsInTheOrderOfTheList)
{
    tests::FreshCatalogue fresh;
    fresh.Add({"t", "X", "b", "", "", "", "", "/2"});
    fresh.Add({"t", "x ", "Á", "", "", "", "", "/9"});
    fresh.Add({"t", "x", "B", "", "", "", "", "/1"});
    fresh.Add({"t", "x", "a", "", "", "", "", "/3"});
    const auto records =
        Records(fresh.access.ExecuteSQL("SEL_ByArtist", kStoredSelect, Value("X"s)));
    EXPECT_EQ(tests::Column(*records, "Path"), (std::vector<std::string>{"/3", "/9", "/1", "/2"}));
}

TEST(SelBy, ArtistThenAlbumThenPathThenDuplicates)
{
    const struct {
        const char *query;
        const char *value;
        std::vector<std::string> want;
    } cases[] = {
        {"SEL_ByTitle", "t", {"a|y|/3|0", "a|y|/3|1", "a|z|/2|0", "b|x|/1|0"}},
        {"SEL_ByYear", "1", {"a|y|/3|0", "a|y|/3|1", "a|z|/2|0", "b|x|/1|0"}},
        {"SEL_ByComment", "c", {"a|y|/3|0", "a|y|/3|1", "a|z|/2|0", "b|x|/1|0"}},
        {"SEL_ByGenre", "g", {"a|y|/3|0", "a|y|/3|1", "a|z|/2|0", "b|x|/1|0"}},
        {"SEL_ByArtist", "A", {"a|y|/3|0", "a|y|/3|1", "a|z|/2|0"}},
        {"SEL_ByAlbum", "Y", {"d|y|/0|0", "a|y|/3|0", "a|y|/3|1"}},
    };
    tests::FreshCatalogue fresh;
    fresh.Add({"t", "a", "y", "1", "c", "g", "", "/3"}, 1);
    fresh.Add({"t", "b", "x", "1", "c", "g", "", "/1"});
    fresh.Add({"t", "a", "z", "1", "c", "g", "", "/2"});
    fresh.Add({"t", "a", "y", "1", "c", "g", "", "/3"});
    fresh.Add({"other", "d", "y", "2", "d", "h", "", "/0"});
    for (const auto &c : cases) {
        SCOPED_TRACE(c.query);
        const auto records =
            Records(fresh.access.ExecuteSQL(c.query, kStoredSelect, Value(std::string(c.value))));
        std::vector<std::string> found;
        for (; !records->AtEnd(); records->MoveNext()) {
            std::string row;
            for (const std::string field : {"Artist", "Album", "Path", "Duplicated"})
                row.append(row.empty() ? "" : "|").append(records->Text(field));
            found.push_back(row);
        }
        EXPECT_EQ(found, c.want);
    }
}

TEST(PlainStatements, OfTheProgram)
{
    tests::FreshCatalogue fresh;
    auto &access = fresh.access;
    fresh.Add({"T", "ñandú", "", "", "", "", "", "/2"});
    fresh.Add({"T", "ÑANDÚ", "", "", "", "", "some Lyrics", "/1"});
    fresh.Add({"T", "Éric", "", "", "", "", "", "/3"});
    fresh.Add({"T", "Fan", "", "", "", "", "", "/4"});
    EXPECT_EQ(fresh.Rows("SELECT DISTINCT Artist\rFROM MP3s\rORDER BY Artist"),
              (std::vector<std::string>{"Éric", "Fan", "ñandú"}));
    const auto rows =
        Records(access.ExecuteSQL("SELECT Path\rFROM MP3s\rWHERE Artist = ?\rORDER BY Artist, Path",
                                  kDetect, Value("Ñandú"s)));
    EXPECT_EQ(tests::RowsOf(*rows), (std::vector<std::string>{"/1", "/2"}));
    const auto found = Records(
        access.ExecuteSQL("SELECT *\rFROM MP3s\rWHERE (Title LIKE ? AND Title LIKE ?) OR (Lyrics "
                          "LIKE ? AND Lyrics LIKE ?)",
                          kSelect, std::vector<Value>{"%LYR%"s, "%x%"s, "%LYR%"s, "%some%"s}));
    EXPECT_EQ(tests::Column(*found, "Path"), std::vector<std::string>{"/1"});
    access.ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", kInsert, std::vector<Value>{"b"s, "/b"s});
    access.ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", kInsert, std::vector<Value>{"Á"s, "/a"s});
    access.ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", kInsert, std::vector<Value>{"B"s, "/B"s});
    EXPECT_EQ(fresh.Rows("SELECT * FROM Lists ORDER BY LIST_Name"),
              (std::vector<std::string>{"Á|/a", "b|/b", "B|/B"}));
    EXPECT_EQ(fresh.Stored("SEL_ByList", Value("B"s)), std::vector<std::string>{"B|/B"});
    access.ExecuteSQL("DELETE FROM Lists WHERE List_Name = ?", kDelete, Value("b"s));
    EXPECT_EQ(fresh.Rows("SELECT LIST_Path FROM Lists WHERE LIST_Name = 'B'"),
              std::vector<std::string>{"/B"});
    access.ExecuteSQL("DELETE FROM MP3s", kDelete);
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"0"});
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM Lists"), std::vector<std::string>{"2"});
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM Genre"), std::vector<std::string>{"126"});
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM Validations"), std::vector<std::string>{"1"});
}
