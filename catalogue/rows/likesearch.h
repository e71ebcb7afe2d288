// catalogue/rows/likesearch.h - a condition that consists of LIKE alone, with its patterns, for
// checking row after row. No state.
#pragma once

#include "catalogue/rows/textmatch.h"
#include "catalogue/sql/likecondition.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

struct LikeSearch {
    LikeNode root;
    std::vector<LikePattern> patterns; // of each term
    std::vector<std::size_t> columnOf; // of each term: which of `columns`
    std::vector<std::string> columns;  // each once, spelled as in the table
};

// The search of `condition` with the texts of its terms, in a table of `columns`.
// Returns: nullopt when it names another column.
[[nodiscard]] std::optional<LikeSearch> MakeLikeSearch(const LikeCondition &condition,
                                                       const std::vector<std::string_view> &texts,
                                                       const std::vector<std::string> &columns);

// Whether the search finds a row; `textOf(i)` is its text in `columns[i]`, as an optional
// string_view: nothing for a null.
template <class TextOf>
[[nodiscard]] bool Finds(const LikeSearch &search, const LikeNode &node, const TextOf &textOf)
{
    if (node.kind == LikeNode::Kind::Term) {
        const auto text = textOf(search.columnOf[node.term]);
        return text && search.patterns[node.term].Matches(*text);
    }
    const bool isAny = node.kind == LikeNode::Kind::Any;
    for (const LikeNode &part : node.parts)
        if (Finds(search, part, textOf) == isAny)
            return isAny;
    return !isAny;
}

} // namespace catalogue
