#include "catalogue/sql/statementtext.h"

#include "catalogue/sql/statementtokens.h"
#include "runtime/text.h"

#include <array>
#include <cstddef>

namespace catalogue
{

namespace
{

using Tokens = std::vector<Token>;

// Words that end a condition or an order, or make a query more than rows of one table.
bool IsClause(const Token &token)
{
    static constexpr std::array<std::string_view, 9> kWords = {
        "GROUP", "HAVING", "LIMIT", "UNION", "EXCEPT", "INTERSECT", "WINDOW", "SELECT", "OFFSET"};
    if (token.kind != TokenKind::Word)
        return token.Is(";");
    for (const auto word : kWords)
        if (token.Is(word))
            return true;
    return false;
}

std::string_view NameIn(const Token &token)
{
    if (token.kind == TokenKind::Quoted)
        return token.text.substr(1, token.text.size() - 2);
    return token.kind == TokenKind::Word ? token.text : std::string_view{};
}

bool IsName(const Token &token)
{
    return !NameIn(token).empty() && !IsClause(token);
}

// Writes tokens in the form that SQLite accepts, and collects the literals.
class Writer
{
public:
    Writer(const Tokens &tokens, Translated &result, bool isStored)
        : m_tokens(tokens), m_result(result), m_isStored(isStored)
    {
    }

    // The tokens from `first` up to but not including `last`.
    std::string Write(std::size_t first, std::size_t last)
    {
        std::string sql;
        for (std::size_t at = first; at < last;)
            at = WriteOne(at, last, sql);
        return sql;
    }

private:
    std::size_t WriteOne(std::size_t at, std::size_t last, std::string &sql);
    std::size_t WriteSameTrimmed(std::size_t at, std::size_t last, std::string &sql);
    void WriteLiteral(std::string_view literal, std::string &sql);
    void WriteParameter(const Parameter &parameter, std::string &sql);
    void WriteTable(std::size_t at, std::string &sql);
    [[nodiscard]] std::size_t InsideUpperTrim(std::size_t at, std::size_t last) const;
    [[nodiscard]] bool Is(std::size_t at, std::string_view word) const
    {
        return at < m_tokens.size() && m_tokens[at].Is(word);
    }

    const Tokens &m_tokens;
    Translated &m_result;
    bool m_isStored;
};

void Writer::WriteLiteral(std::string_view literal, std::string &sql)
{
    const auto inside = literal.substr(1, literal.size() - 2);
    if (inside.find('\'') == std::string_view::npos || literal[0] == '#')
        WriteParameter({inside, {}}, sql);
    else
        WriteParameter({m_result.unquoted.emplace_back(runtime::Replace(inside, "''", "'")), {}},
                       sql);
}

void Writer::WriteParameter(const Parameter &parameter, std::string &sql)
{
    m_result.parameters.push_back(parameter);
    sql += '?';
    sql += std::to_string(m_result.parameters.size());
    sql += ' ';
}

// Writes the table after FROM or JOIN in a plain SELECT: the view of MP3s, with the table's name.
void Writer::WriteTable(std::size_t at, std::string &sql)
{
    sql += kTextView;
    sql += ' ';
    const bool isRenamed =
        Is(at + 1, "AS") || (at + 1 < m_tokens.size() && m_tokens[at + 1].kind == TokenKind::Word &&
                             !Is(at + 1, "WHERE") && !Is(at + 1, "ORDER") && !Is(at + 1, "JOIN") &&
                             !Is(at + 1, "INNER") && !Is(at + 1, "LEFT") && !Is(at + 1, "ON") &&
                             !Is(at + 1, "CROSS") && !IsClause(m_tokens[at + 1]));
    if (!isRenamed)
        sql += "AS MP3s ";
}

// The index after "UPPER(TRIM(...))" at `at`; 0 when it is not there.
std::size_t Writer::InsideUpperTrim(std::size_t at, std::size_t last) const
{
    if (!Is(at, "UPPER") || !Is(at + 1, "(") || !Is(at + 2, "TRIM") || !Is(at + 3, "("))
        return 0;
    int depth = 2;
    for (std::size_t end = at + 4; end < last; ++end) {
        depth += Is(end, "(") ? 1 : Is(end, ")") ? -1 : 0;
        if (depth == 2 && Is(end, ",")) // TRIM that cuts other characters than blanks
            return 0;
        if (depth == 0)
            return end + 1;
        if (depth == 1 && !Is(end + 1, ")"))
            return 0;
    }
    return 0;
}

std::size_t Writer::WriteSameTrimmed(std::size_t at, std::size_t last, std::string &sql)
{
    const auto middle = InsideUpperTrim(at, last);
    if (middle == 0 || !Is(middle, "="))
        return 0;
    const auto end = InsideUpperTrim(middle + 1, last);
    if (end == 0)
        return 0;
    sql += "same_trimmed(" + Write(at + 4, middle - 2);
    sql += ", " + Write(middle + 5, end - 2) + ") ";
    return end;
}

std::size_t Writer::WriteOne(std::size_t at, std::size_t last, std::string &sql)
{
    const Token &token = m_tokens[at];
    if (const auto end = token.kind == TokenKind::Word ? WriteSameTrimmed(at, last, sql) : 0)
        return end;
    if (token.Is("UPPER") && Is(at + 1, "(")) {
        sql += "upper_text";
        return at + 1;
    }
    if (token.Is("LIKE")) {
        sql += "REGEXP ";
    } else if (token.kind == TokenKind::Date || (token.kind == TokenKind::Text && !m_isStored)) {
        WriteLiteral(token.text, sql);
    } else if (token.kind == TokenKind::Placed) {
        WriteParameter({{}, token.valueIndex}, sql);
    } else if (!m_isStored && m_result.verb == Verb::Select && at > 0 &&
               (Is(at - 1, "FROM") || Is(at - 1, "JOIN")) &&
               runtime::EqualAscii(NameIn(token), "MP3s")) {
        WriteTable(at, sql);
    } else {
        m_result.hasOpenMarker |= token.kind == TokenKind::Parameter;
        sql += token.text;
        // SQLite reads a mark of two characters, such as "<>" and "||", only without a blank
        // inside.
        const bool joins = token.kind == TokenKind::Mark && at + 1 < last &&
                           m_tokens[at + 1].kind == TokenKind::Mark &&
                           m_tokens[at + 1].text.data() == token.text.data() + 1;
        if (!joins)
            sql += ' ';
    }
    return at + 1;
}

Verb VerbOf(const Tokens &tokens)
{
    if (tokens.empty())
        return Verb::Other;
    if (tokens[0].Is("SELECT"))
        return Verb::Select;
    if (tokens[0].Is("INSERT"))
        return Verb::Insert;
    if (tokens[0].Is("UPDATE"))
        return Verb::Update;
    return tokens[0].Is("DELETE") ? Verb::Delete : Verb::Other;
}

// The first "ORDER BY" outside brackets; the number of tokens when there is none.
std::size_t FindOrder(const Tokens &tokens)
{
    int depth = 0;
    for (std::size_t at = 0; at + 1 < tokens.size(); ++at) {
        depth += tokens[at].Is("(") ? 1 : tokens[at].Is(")") ? -1 : 0;
        if (depth == 0 && tokens[at].Is("ORDER") && tokens[at + 1].Is("BY"))
            return at;
    }
    return tokens.size();
}

// Fills in the terms of an order that consists only of names. Returns: false for any other order.
bool ReadOrder(const Tokens &tokens, std::size_t at, std::vector<OrderTerm> &order)
{
    while (at < tokens.size()) {
        if (!IsName(tokens[at]))
            return false;
        order.push_back({std::string(NameIn(tokens[at++])), false});
        if (at < tokens.size() && (tokens[at].Is("ASC") || tokens[at].Is("DESC")))
            order.back().descending = tokens[at++].Is("DESC");
        if (at < tokens.size() && !tokens[at++].Is(","))
            return false;
    }
    return !order.empty();
}

// Whether the tokens are "SELECT * FROM MP3s", "WHERE" with a condition without clauses, and the
// order at `orderAt`.
bool IsRowQuery(const Tokens &tokens, std::size_t orderAt)
{
    if (tokens.size() < 4 || !tokens[0].Is("SELECT") || !tokens[1].Is("*") ||
        !tokens[2].Is("FROM") || !runtime::EqualAscii(NameIn(tokens[3]), "MP3s") || orderAt < 4)
        return false;
    if (orderAt == 4)
        return true;
    if (!tokens[4].Is("WHERE") || orderAt == 5)
        return false;
    for (std::size_t at = 5; at < orderAt; ++at)
        if (IsClause(tokens[at]) || tokens[at].kind == TokenKind::Broken)
            return false;
    return true;
}

// Writes the order of a SELECT: each term that is a name gets the collation.
void WriteOrder(const Tokens &tokens, std::size_t at, Writer &writer, std::string &sql)
{
    sql += "ORDER BY ";
    for (at += 2; at < tokens.size(); ++at) {
        const bool isFirst = tokens[at - 1].Is("BY") || tokens[at - 1].Is(",");
        const bool isWhole = at + 1 == tokens.size() || tokens[at + 1].Is(",") ||
                             tokens[at + 1].Is("ASC") || tokens[at + 1].Is("DESC") ||
                             tokens[at + 1].Is(";");
        sql += writer.Write(at, at + 1);
        if (isFirst && isWhole && IsName(tokens[at]))
            sql += "COLLATE " + std::string(kCollation) + " ";
    }
}

Translated Translate(Tokens tokens, bool isStored)
{
    Translated result;
    if (tokens.size() == 1 && tokens[0].kind == TokenKind::Quoted && tokens[0].text[0] == '[') {
        static const std::string kAllOf = "SELECT * FROM";
        const Token table = tokens[0];
        tokens = TokensOf(std::string_view(kAllOf));
        tokens.push_back(table);
    }
    result.verb = VerbOf(tokens);
    if (result.verb == Verb::Delete && tokens.size() > 1 && tokens[1].Is("*"))
        tokens.erase(tokens.begin() + 1);
    Writer writer(tokens, result, isStored);
    const bool isSelect = result.verb == Verb::Select;
    const auto orderAt = isSelect ? FindOrder(tokens) : tokens.size();
    if (isSelect && IsRowQuery(tokens, orderAt) &&
        (orderAt == tokens.size() || ReadOrder(tokens, orderAt + 2, result.rows.order))) {
        result.isRowQuery = true;
        if (orderAt > 4) {
            result.rows.condition = writer.Write(5, orderAt);
            if (!isStored)
                result.rows.likes = ReadLikeCondition(tokens, 5, orderAt);
        }
        result.parameters.clear(); // they are collected again by the Write below
        result.unquoted.clear();
    }
    result.sql = writer.Write(0, orderAt);
    if (orderAt < tokens.size())
        WriteOrder(tokens, orderAt, writer, result.sql);
    return result;
}

} // namespace

Translated TranslateStatement(const Statement &statement)
{
    return Translate(TokensOf(statement), false);
}

Translated TranslateStoredQuery(std::string_view statement)
{
    return Translate(TokensOf(statement), true);
}

} // namespace catalogue
