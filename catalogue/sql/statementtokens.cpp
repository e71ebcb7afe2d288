#include "catalogue/sql/statementtokens.h"

#include "runtime/text.h"

#include <algorithm>

namespace catalogue
{

namespace
{

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsWordStart(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsWordPart(char c)
{
    return IsWordStart(c) || IsDigit(c) || c == '$';
}

// The end of the text that begins with a mark at `from` and ends with `close`. A doubled `close` is
// a character of the text, except for "]" and "#".
// Returns: npos when the text has no end.
std::size_t EndOfQuoted(std::string_view text, std::size_t from, char close)
{
    for (auto at = text.find(close, from + 1); at != std::string_view::npos;
         at = text.find(close, at + 2))
        if (at + 1 >= text.size() || text[at + 1] != close || close == ']' || close == '#')
            return at + 1;
    return std::string_view::npos;
}

std::size_t SkipBlanksAndComments(std::string_view text, std::size_t at)
{
    while (at < text.size()) {
        if (IsBlank(text[at])) {
            ++at;
        } else if (text.substr(at).starts_with("--")) {
            at = std::min(text.find('\n', at), text.size());
        } else if (text.substr(at).starts_with("/*")) {
            const auto end = text.find("*/", at + 2);
            at = end == std::string_view::npos ? text.size() : end + 2;
        } else {
            break;
        }
    }
    return at;
}

Token QuotedToken(std::string_view text, std::size_t at, TokenKind kind, char close)
{
    const auto end = EndOfQuoted(text, at, close);
    if (end == std::string_view::npos)
        return {TokenKind::Broken, text.substr(at), 0};
    return {kind, text.substr(at, end - at), 0};
}

Token RunToken(std::string_view text, std::size_t at, TokenKind kind, bool (*belongs)(char))
{
    auto end = at + 1;
    while (end < text.size() && belongs(text[end]))
        ++end;
    return {kind, text.substr(at, end - at), 0};
}

Token TokenAt(std::string_view text, std::size_t at)
{
    const char c = text[at];
    switch (c) {
    case '\'':
        return QuotedToken(text, at, TokenKind::Text, '\'');
    case '"':
    case '`':
        return QuotedToken(text, at, TokenKind::Quoted, c);
    case '[':
        return QuotedToken(text, at, TokenKind::Quoted, ']');
    case '#':
        return QuotedToken(text, at, TokenKind::Date, '#');
    case '?':
        return RunToken(text, at, TokenKind::Parameter, IsDigit);
    default:
        break;
    }
    if (IsDigit(c))
        return RunToken(text, at, TokenKind::Number,
                        [](char d) { return IsWordPart(d) || d == '.'; });
    if (IsWordStart(c))
        return RunToken(text, at, TokenKind::Word, IsWordPart);
    return {TokenKind::Mark, text.substr(at, 1), 0};
}

} // namespace

bool Token::Is(std::string_view word) const
{
    return (kind == TokenKind::Word || kind == TokenKind::Mark) && runtime::EqualAscii(text, word);
}

std::vector<Token> TokensOf(std::string_view statement)
{
    std::vector<Token> tokens;
    tokens.reserve(48);
    for (auto at = SkipBlanksAndComments(statement, 0); at < statement.size();) {
        tokens.push_back(TokenAt(statement, at));
        const auto &last = tokens.back().text;
        at = static_cast<std::size_t>(last.data() - statement.data()) + last.size();
        at = SkipBlanksAndComments(statement, at);
    }
    return tokens;
}

std::vector<Token> TokensOf(const Statement &statement)
{
    std::vector<Token> tokens = TokensOf(std::string_view(statement.text));
    auto value = statement.values.begin();
    for (Token &token : tokens) {
        const auto at = static_cast<std::size_t>(token.text.data() - statement.text.data());
        while (value != statement.values.end() && value->place < at)
            ++value; // in a comment or a quoted name: such a place is not used
        if (value == statement.values.end() || value->place != at)
            continue;
        token.kind = TokenKind::Placed;
        token.valueIndex = static_cast<std::size_t>(value - statement.values.begin());
    }
    return tokens;
}

} // namespace catalogue
