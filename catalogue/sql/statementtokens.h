// catalogue/sql/statementtokens.h - cuts a statement into words, texts and marks. No state.
#pragma once

#include "catalogue/provider.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace catalogue
{

enum class TokenKind {
    Word,      // a name or a keyword
    Quoted,    // [name], "name" or `name`, with its marks
    Text,      // 'text', with its apostrophes
    Date,      // #date#, with its marks
    Number,    // digits, with a point or an exponent
    Parameter, // ? and ?1
    Placed,    // the place of a value
    Mark,      // one character of punctuation
    Broken     // a text, name or date without an end
};

struct Token {
    TokenKind kind = TokenKind::Mark;
    std::string_view text;      // the text in the statement
    std::size_t valueIndex = 0; // of a Placed: which of the statement's values

    // Whether it is this keyword or mark; keywords compare without regard to letter case.
    [[nodiscard]] bool Is(std::string_view word) const;
};

// All tokens of `statement` in their order; blanks, line ends and comments are skipped.
std::vector<Token> TokensOf(std::string_view statement);

// The same for a statement with values; its text must outlive the tokens.
std::vector<Token> TokensOf(const Statement &statement);

} // namespace catalogue
