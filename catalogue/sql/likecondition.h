// catalogue/sql/likecondition.h - a condition that consists of LIKE alone, such as
// "Title LIKE ? AND Title LIKE ? OR Artist LIKE ?", parsed, so that it can be evaluated without
// SQLite. No state.
#pragma once

#include "catalogue/sql/statementtokens.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace catalogue
{

// Conditions with more terms are evaluated by SQLite.
inline constexpr std::size_t kMostLikeTerms = 500;

// A term, or several parts of which all or any must hold.
struct LikeNode {
    enum class Kind { Term, All, Any } kind = Kind::Term;
    std::size_t term = 0;        // of a Term: its number
    std::vector<LikeNode> parts; // of the others, two or more
};

// The pattern of each term is the text or value of its number in the condition.
struct LikeCondition {
    std::vector<std::string> columns; // of each term, as written, without its marks
    LikeNode root;
};

// Parses the tokens from `first` up to, but not including, `last`.
// Returns: nullopt when they contain anything but names, LIKE, texts or values, AND, OR and
// brackets, or more than kMostLikeTerms terms.
[[nodiscard]] std::optional<LikeCondition> ReadLikeCondition(const std::vector<Token> &tokens,
                                                             std::size_t first, std::size_t last);

} // namespace catalogue
