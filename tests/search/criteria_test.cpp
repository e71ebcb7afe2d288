#include "search/criteria.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace
{

using search::BuildSearch;
using search::Criteria;
using Texts = std::vector<std::string>;

// The condition after WHERE.
std::string Condition(const search::Search &search)
{
    constexpr std::string_view kFront = "SELECT *\rFROM MP3s\rWHERE ";
    EXPECT_EQ(search.statement.substr(0, kFront.size()), kFront);
    return search.statement.substr(std::min(kFront.size(), search.statement.size()));
}

Texts Params(const search::Search &search)
{
    Texts params;
    for (const catalogue::Value &value : search.params)
        params.push_back(std::get<std::string>(value));
    return params;
}

Criteria With(std::string text, int type, std::initializer_list<std::size_t> ticked)
{
    Criteria criteria;
    criteria.text = std::move(text);
    criteria.type = type;
    for (const std::size_t index : ticked)
        criteria.ticked[index] = true;
    return criteria;
}

TEST(BuildSearch, Table)
{
    const struct {
        const char *name;
        Criteria criteria;
        std::string wantCondition;
        Texts wantParams;
        std::string wantText;
    } cases[] = {
        {"one word, any", With("abba", 0, {0}), "Title LIKE ?", {"%abba%"}, "abba "},
        {"one word, all", With("abba", 1, {0}), "(Title LIKE ?)", {"%abba%"}, "abba "},
        {"one word, phrase", With("abba", 2, {0}), "Title LIKE ?", {"%abba%"}, "abba "},
        {"two words, any",
         With("w1 w2", 0, {0, 1}),
         "Title LIKE ? OR Title LIKE ? OR Artist LIKE ? OR Artist LIKE ?",
         {"%w1%", "%w2%", "%w1%", "%w2%"},
         "w1 w2"},
        {"two words, all",
         With("w1 w2", 1, {0, 1}),
         "(Title LIKE ? AND Title LIKE ?) OR (Artist LIKE ? AND Artist LIKE ?)",
         {"%w1%", "%w2%", "%w1%", "%w2%"},
         "w1 w2"},
        {"two words, phrase",
         With("w1 w2", 2, {0, 1}),
         "Title LIKE ? OR Artist LIKE ?",
         {"%w1 w2%", "%w1 w2%"},
         "w1 w2"},
        {"nothing, any", With("", 0, {0}), "Title LIKE ?", {"%%%"}, "% "},
        {"nothing, all", With("", 1, {0}), "(Title LIKE ?)", {"%%%"}, "% "},
        {"nothing, phrase", With("", 2, {0}), "Title LIKE ?", {"%"}, "% "},
        {"the box as the last search left it",
         With("abba ", 0, {0}),
         "Title LIKE ?",
         {"%abba%"},
         "abba "},
        {"the phrase as the last search left it",
         With("abba ", 2, {0}),
         "Title LIKE ?",
         {"%abba %"},
         "abba "},
        {"a last word of one letter is lost",
         With("abba b", 1, {0}),
         "(Title LIKE ?)",
         {"%abba%"},
         "abba b"},
        {"whatever its bytes",
         With("abba \u00E9", 0, {0}),
         "Title LIKE ?",
         {"%abba%"},
         "abba \u00E9"},
        {"one of two letters is not",
         With("a \u00E9b", 0, {0}),
         "Title LIKE ? OR Title LIKE ?",
         {"%a%", "%\u00E9b%"},
         "a \u00E9b"},
        {"a letter alone is a word", With("b", 0, {0}), "Title LIKE ?", {"%b%"}, "b "},
        {"two blanks: an empty word",
         With("a  bc", 0, {0}),
         "Title LIKE ? OR Title LIKE ? OR Title LIKE ?",
         {"%a%", "%%", "%bc%"},
         "a  bc"},
        {"a blank in front",
         With(" ab", 0, {0}),
         "Title LIKE ? OR Title LIKE ?",
         {"%%", "%ab%"},
         " ab"},
        {"a blank alone", With(" ", 0, {0}), "Title LIKE ?", {"%%"}, " "},
        {"other spaces are no blanks", With("a\tb", 0, {0}), "Title LIKE ?", {"%a\tb%"}, "a\tb "},
        {"wildcards and marks go as they are",
         With("a%_'?", 0, {0}),
         "Title LIKE ?",
         {"%a%_'?%"},
         "a%_'? "},
        {"no entry of the list: a phrase",
         With("a bc", -1, {7}),
         "Lyrics LIKE ?",
         {"%a bc%"},
         "a bc"},
        {"all fields in their order", With("x", 0, {7, 6, 5, 4, 3, 2, 1, 0}),
         "Title LIKE ? OR Artist LIKE ? OR Album LIKE ? OR Year LIKE ? OR Comment LIKE ? OR "
         "Genre LIKE ? OR Path LIKE ? OR Lyrics LIKE ?",
         Texts(8, "%x%"), "x "},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const search::Search search = BuildSearch(c.criteria);
        EXPECT_TRUE(search.HasField());
        EXPECT_EQ(Condition(search), c.wantCondition);
        EXPECT_EQ(Params(search), c.wantParams);
        EXPECT_EQ(search.text, c.wantText);
    }
}

TEST(BuildSearch, NoFieldCutsTheStatementItself)
{
    for (const int type : {0, 1, 2}) {
        const search::Search search = BuildSearch(With("abba", type, {}));
        EXPECT_FALSE(search.HasField());
        EXPECT_EQ(search.statement, "SELECT *\rFROM MP3s\rWH");
        EXPECT_TRUE(search.params.empty());
        EXPECT_EQ(search.text, "abba "); // the box gets its blank all the same
    }
}

} // namespace
