#include "catalogue/sql/statementtext.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

// The translated text, with one blank for several in a row.
std::string Sql(const Translated &translated)
{
    std::string sql;
    for (const auto &word : runtime::Split(translated.sql, " "))
        if (!word.empty())
            sql += (sql.empty() ? "" : " ") + word;
    return sql;
}

} // namespace

TEST(TranslateStatement, Table)
{
    const struct {
        const char *name;
        std::string statement, sql;
        std::vector<std::string> literals;
    } cases[] = {
        {"plain", "DELETE FROM MP3s", "DELETE FROM MP3s", {}},
        {"star of a delete",
         "DELETE * FROM Lists\rWHERE a = 'b'",
         "DELETE FROM Lists WHERE a = ?1",
         {"b"}},
        {"table alone", "[Lists]", "SELECT * FROM [Lists]", {}},
        {"literals",
         "INSERT INTO Lists VALUES('a', 'it''s')",
         "INSERT INTO Lists VALUES ( ?1 , ?2 )",
         {"a", "it's"}},
        {"NUL and line ends", "UPDATE x SET y = 'a\0\r\nb'"s, "UPDATE x SET y = ?1", {"a\0\r\nb"s}},
        {"date", "UPDATE x SET y = #1/2/2001#", "UPDATE x SET y = ?1", {"1/2/2001"}},
        {"words inside a literal",
         "UPDATE x SET y = 'DELETE * LIKE ?'",
         "UPDATE x SET y = ?1",
         {"DELETE * LIKE ?"}},
        {"like",
         "SELECT a FROM Lists WHERE a LIKE 'x%' AND b NOT like 'y'",
         "SELECT a FROM Lists WHERE a REGEXP ?1 AND b NOT REGEXP ?2",
         {"x%", "y"}},
        {"order",
         "SELECT * FROM Lists ORDER BY LIST_Name DESC, b",
         "SELECT * FROM Lists ORDER BY LIST_Name COLLATE CATALOGUE_TEXT DESC , b COLLATE "
         "CATALOGUE_TEXT",
         {}},
        {"order inside brackets",
         "SELECT a FROM (SELECT a FROM Lists ORDER BY a) AS x WHERE a <> 'b'",
         "SELECT a FROM ( SELECT a FROM Lists ORDER BY a ) AS x WHERE a <> ?1",
         {"b"}},
        {"view",
         "SELECT DISTINCT Artist\rFROM MP3s\rORDER BY Artist",
         "SELECT DISTINCT Artist FROM temp.TextOfMP3s AS MP3s ORDER BY Artist COLLATE "
         "CATALOGUE_TEXT",
         {}},
        {"view under another name",
         "SELECT m.Title FROM mp3s AS m",
         "SELECT m . Title FROM temp.TextOfMP3s AS m",
         {}},
        {"marks of two characters",
         "SELECT a FROM Lists WHERE a <> b || c",
         "SELECT a FROM Lists WHERE a <> b || c",
         {}},
        {"comment", "SELECT a -- 'x'\nFROM /* y */ Lists", "SELECT a FROM Lists", {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Statement statement(c.statement);
        const auto translated = TranslateStatement(statement);
        EXPECT_EQ(Sql(translated), c.sql);
        std::vector<std::string> literals;
        for (const Parameter &parameter : translated.parameters)
            literals.emplace_back(parameter.literal);
        EXPECT_EQ(literals, c.literals);
    }
}

TEST(TranslateStatement, RowQueries)
{
    const struct {
        std::string statement;
        bool want;
        std::size_t terms;
    } cases[] = {
        {"SELECT * FROM MP3s", true, 0},
        {"SELECT *\rFROM MP3s\rORDER BY Title", true, 1},
        {"select * from [MP3s] order by Title desc, Path", true, 2},
        {"SELECT * FROM MP3s WHERE a LIKE '%SELECT%'", true, 0},
        {"SELECT * FROM MP3s LIMIT 1", false, 0},
        {"SELECT * FROM MP3s WHERE a = (SELECT 1)", false, 0},
        {"SELECT * FROM MP3s UNION SELECT * FROM MP3s", false, 0},
        {"SELECT * FROM MP3s ORDER BY Title LIMIT 1", false, 0},
        {"SELECT * FROM MP3s ORDER BY 1", false, 0},
        {"SELECT * FROM MP3s, Lists", false, 0},
        {"SELECT * FROM MP3s m", false, 0},
        {"SELECT Path FROM MP3s", false, 0},
        {"SELECT * FROM Lists", false, 0},
        {"SELECT * FROM MP3s WHERE a = 1; DELETE FROM MP3s", false, 0},
        {"SELECT * FROM MP3s WHERE", false, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.statement);
        const Statement statement(c.statement);
        const auto translated = TranslateStatement(statement);
        EXPECT_EQ(translated.isRowQuery, c.want);
        if (c.want) {
            EXPECT_EQ(translated.rows.order.size(), c.terms);
        }
    }
}

TEST(TranslateStatement, OpenMarkerIsSeen)
{
    const Statement open("SELECT * FROM Lists WHERE a = ?");
    const Statement text("SELECT * FROM Lists WHERE a = '?'");
    EXPECT_TRUE(TranslateStatement(open).hasOpenMarker);
    EXPECT_FALSE(TranslateStatement(text).hasOpenMarker);
}

TEST(TranslateStoredQuery, TrimmedUpperCaseBecomesOneComparison)
{
    EXPECT_EQ(Sql(TranslateStoredQuery("SELECT a FROM b WHERE UPPER(TRIM(COALESCE(c, ''))) = "
                                       "UPPER(TRIM(?1))")),
              "SELECT a FROM b WHERE same_trimmed(COALESCE ( c , '' ) , ?1 )");
    EXPECT_EQ(Sql(TranslateStoredQuery("SELECT UPPER(a) FROM b WHERE UPPER(c) = UPPER(?1)")),
              "SELECT upper_text( a ) FROM b WHERE upper_text( c ) = upper_text( ?1 )");
    EXPECT_EQ(Sql(TranslateStoredQuery("SELECT UPPER(TRIM(a, 'x')) = UPPER(TRIM(b))")),
              "SELECT upper_text( TRIM ( a , 'x' )) = upper_text( TRIM ( b ))");
}

namespace
{

// How many texts and dates of a statement without comments have an end.
std::size_t WholeLiterals(std::string_view statement)
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < statement.size(); ++at) {
        const char mark = statement[at];
        if (mark != '\'' && mark != '#')
            continue;
        do
            at = statement.find(mark, at + 1);
        while (mark == '\'' && at != std::string_view::npos && statement.substr(at + 1, 1) == "'" &&
               at++ < statement.size());
        if (at == std::string_view::npos)
            break;
        ++count;
    }
    return count;
}

} // namespace

TEST(TranslateStatement, AnyCutOfAnyStatementIsSafe)
{
    const std::string statement = "SELECT [a], \"b\", `c` FROM MP3s WHERE UPPER(TRIM(x)) = "
                                  "UPPER(TRIM('y''z')) AND d = #1# ORDER BY [e] DESC, f -- g";
    for (std::size_t length = 0; length <= statement.size(); ++length) {
        const Statement cut(std::string_view(statement).substr(0, length));
        EXPECT_EQ(TranslateStatement(cut).parameters.size(), WholeLiterals(cut.text)) << cut.text;
        const auto rest = std::string_view(statement).substr(length);
        EXPECT_FALSE(TranslateStoredQuery(rest).hasOpenMarker) << rest;
    }
}
