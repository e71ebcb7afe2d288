#include "catalogue/sql/likecondition.h"

#include <gtest/gtest.h>

namespace
{

using catalogue::LikeNode;

// The condition with its terms as numbers: "(0 & 1) | 2".
std::string Words(const LikeNode &node)
{
    if (node.kind == LikeNode::Kind::Term)
        return std::to_string(node.term);
    std::string words;
    for (const LikeNode &part : node.parts) {
        words += words.empty() ? "" : node.kind == LikeNode::Kind::All ? " & " : " | ";
        words += part.kind == LikeNode::Kind::Term ? Words(part) : "(" + Words(part) + ")";
    }
    return words;
}

std::string Read(const std::string &condition)
{
    const auto tokens = catalogue::TokensOf(std::string_view(condition));
    const auto read = catalogue::ReadLikeCondition(tokens, 0, tokens.size());
    if (!read)
        return "none";
    std::string columns;
    for (const std::string &column : read->columns)
        columns += " " + column;
    return Words(read->root) + ":" + columns;
}

TEST(LikeCondition, Table)
{
    const struct {
        const char *name, *condition, *want;
    } cases[] = {
        {"one term", "Title LIKE '%a%'", "0: Title"},
        {"any letter case", "Title like '%a%' or Artist Like '%b%'", "0 | 1: Title Artist"},
        {"AND before OR", "a LIKE '1' OR b LIKE '2' AND c LIKE '3' OR d LIKE '4'",
         "0 | (1 & 2) | 3: a b c d"},
        {"brackets", "(a LIKE '1' OR b LIKE '2') AND (c LIKE '3')", "(0 | 1) & 2: a b c"},
        {"as a search writes it",
         "(Title LIKE 'x' AND Title LIKE 'y') OR (Path LIKE 'x' AND Path LIKE 'y')",
         "(0 & 1) | (2 & 3): Title Title Path Path"},
        {"quoted names", "[Title] LIKE 'x' OR \"Artist\" LIKE 'y'", "0 | 1: Title Artist"},
        {"nothing", "", "none"},
        {"NOT", "NOT a LIKE 'x'", "none"},
        {"NOT LIKE", "a NOT LIKE 'x'", "none"},
        {"ESCAPE", "a LIKE 'x' ESCAPE '!'", "none"},
        {"another comparison", "a LIKE 'x' OR b = 'y'", "none"},
        {"a column as the pattern", "a LIKE b", "none"},
        {"a number as the pattern", "a LIKE 1", "none"},
        {"a parameter without a value", "a LIKE ?", "none"},
        {"a table's name", "MP3s.a LIKE 'x'", "none"},
        {"a function", "UPPER(a) LIKE 'x'", "none"},
        {"an open bracket", "(a LIKE 'x'", "none"},
        {"a bracket too many", "a LIKE 'x')", "none"},
        {"an OR too many", "a LIKE 'x' OR", "none"},
        {"two terms without a word between", "a LIKE 'x' b LIKE 'y'", "none"},
        {"a broken text", "a LIKE 'x", "none"},
        {"brackets nine deep", "(((((((((a LIKE 'x')))))))))", "none"},
        {"brackets eight deep", "((((((((a LIKE 'x'))))))))", "0: a"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Read(c.condition), c.want);
    }
}

TEST(LikeCondition, ManyTermsAreLeftToTheEngine)
{
    std::string most;
    for (std::size_t i = 0; i < catalogue::kMostLikeTerms; ++i)
        most += std::string(i == 0 ? "" : " OR ") + "a LIKE 'x'";
    EXPECT_NE(Read(most), "none");
    EXPECT_EQ(Read(most + " OR a LIKE 'x'"), "none");
}

} // namespace
