#include "catalogue/sql/statementparams.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

std::vector<Value> Texts(const std::vector<std::string> &texts)
{
    return {texts.begin(), texts.end()};
}

} // namespace

TEST(SubstituteParams, ValuesAreData)
{
    const struct {
        const char *name;
        std::string words;
        std::vector<std::string> values;
        Marker marker;
        std::string text;
        std::vector<std::string> placed;
    } cases[] = {
        {"in their order", "a(?, ?)", {"1", "2"}, "?", "a(? , ? )", {"1", "2"}},
        {"apostrophes stay single", "a(?)", {"it's"}, "?", "a(? )", {"it's"}},
        {"a later value inside an earlier one",
         "a(?, ?)",
         {"x?y", "'b'"},
         "?",
         "a(? , ?)",
         {"x'b'y"}},
        {"a value inside a value inside a value",
         "a(?, ?)",
         {"<?>", "[?]", "3", "4"},
         "?",
         "a(? , ? )",
         {"<[3]>", "4"}},
        {"several inside one", "a(?, ?)", {"??", "1", "2", "3"}, "?", "a(? , ? )", {"12", "3"}},
        {"a marker of the last value is text",
         "a(?, ?)",
         {"1", "2?"},
         "?",
         "a(? , ? )",
         {"1", "2?"}},
        {"a marker without a value stays", "a(?, ?)", {"1"}, "?", "a(? , ?)", {"1"}},
        {"or is the empty text",
         "a(¹, ¹, ¹)",
         {"¹¹x", "2"},
         {"¹", LeftOver::IsEmpty},
         "a(? , ? , ? )",
         {"2x", "", ""}},
        {"a value without a marker is left out", "a(?)", {"1", "2"}, "?", "a(? )", {"1"}},
        {"no marker, no value", "a(?)", {"1"}, "", "a(?)", {}},
        {"a text of the statement is data as well",
         "a('?', ?, 'it''s ?')",
         {"1"},
         "?",
         "a('?', ? , 'it''s ?')",
         {"1"}},
        {"another marker leaves ? alone", "a(¹, '?')", {"?¹"}, "¹", "a(? , '?')", {"?¹"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Statement statement = SubstituteParams(c.words, Texts(c.values), c.marker);
        EXPECT_EQ(statement.text, c.text);
        std::vector<std::string> placed;
        for (const PlacedValue &value : statement.values) {
            EXPECT_EQ(statement.text.substr(value.place, 2), kValuePlace);
            placed.push_back(std::get<std::string>(value.value));
        }
        EXPECT_EQ(placed, c.placed);
    }
}

TEST(SubstituteParams, OtherValuesKeepTheirType)
{
    const std::vector<Value> values = {std::int64_t{7}, true, Date{"1/2/2001"}, "x?"s, 0.5};
    const Statement statement = SubstituteParams("(?, ?, ?, ?)", values, "?");
    ASSERT_EQ(statement.values.size(), 4U);
    EXPECT_EQ(std::get<std::int64_t>(statement.values[0].value), 7);
    EXPECT_TRUE(std::get<bool>(statement.values[1].value));
    EXPECT_EQ(std::get<Date>(statement.values[2].value).text, "1/2/2001");
    EXPECT_EQ(std::get<std::string>(statement.values[3].value), "x0.5");
    EXPECT_EQ(ReadableText(statement), "(7, -1, #1/2/2001#, 'x0.5')");
}

// A text of nothing but markers: the work grows no faster than the text.
TEST(SubstituteParams, AMillionMarkersTakeNoTime)
{
    std::string markers;
    for (int i = 0; i < 1000000; ++i)
        markers += "¹";
    const auto start = std::clock(); // processor time, whatever else the machine does
    const Statement statement =
        SubstituteParams("(¹, ¹)", Texts({markers, markers, "x"}), {"¹", LeftOver::IsEmpty});
    EXPECT_LT(std::clock() - start, 2 * CLOCKS_PER_SEC);
    ASSERT_EQ(statement.values.size(), 2U);
    EXPECT_EQ(std::get<std::string>(statement.values[0].value), "x");
}

TEST(ReadableText, LongLiteralsAreShortenedInTheirMiddle)
{
    const std::string head(90, 'a'), tail(90, 'b');
    const std::string longText = head + std::string(40000, '-') + tail;
    const std::string shortText = head + " (... 40000 characters left out ...) " + tail;
    EXPECT_EQ(ReadableText(SubstituteParams("x = ?, 'y'", Texts({longText}), "?")),
              "x = '" + shortText + "', 'y'");
    EXPECT_EQ(ReadableText(Statement("x = '" + longText + "'")), "x = '" + shortText + "'");
    const std::string most(200, 'a');
    EXPECT_EQ(ReadableText(SubstituteParams("?", Texts({most}), "?")), "'" + most + "'");
    std::string wide;
    for (int i = 0; i < 201; ++i)
        wide += "é";
    const std::string shown = ReadableText(SubstituteParams("?", Texts({wide}), "?"));
    EXPECT_EQ(shown.size(), 2 * 180 + "' (... 21 characters left out ...) '"s.size());
}

TEST(ReadableText, IsWhatThePersonWhoWroteItWouldWrite)
{
    EXPECT_EQ(ReadableText(SubstituteParams("INSERT INTO x VALUES(¹, '/it''s', ¹)",
                                            Texts({"don't", "b"}), "¹")),
              "INSERT INTO x VALUES('don''t', '/it''s', 'b')");
}
