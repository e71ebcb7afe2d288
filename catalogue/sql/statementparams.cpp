#include "catalogue/sql/statementparams.h"

#include "catalogue/sql/statementtokens.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <array>
#include <deque>
#include <span>

namespace catalogue
{

namespace
{

constexpr std::size_t kLongestLiteral = 200; // characters, in a text that a person reads

// Whether `text` contains `word` (upper case, ASCII) without regard to letter case. It advances by
// up to the word's length at a time, because statements contain whole song texts.
bool HasWord(std::string_view text, std::string_view word)
{
    std::array<std::uint8_t, 256> steps{};
    steps.fill(static_cast<std::uint8_t>(word.size()));
    for (std::size_t i = 0; i + 1 < word.size(); ++i) {
        const auto step = static_cast<std::uint8_t>(word.size() - 1 - i);
        steps[static_cast<unsigned char>(word[i])] = step;
        steps[static_cast<unsigned char>(word[i]) + ('a' - 'A')] = step;
    }
    for (auto end = word.size(); end <= text.size();) {
        const auto last = static_cast<unsigned char>(text[end - 1]);
        if (runtime::EqualAscii(text.substr(end - word.size(), word.size()), word))
            return true;
        end += steps[last];
    }
    return false;
}

std::string TextForm(const Value &value)
{
    struct ToText {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const std::string &text) const { return text; }
        std::string operator()(bool flag) const { return flag ? "-1" : "0"; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const { return runtime::NumberText(number); }
        std::string operator()(const Date &date) const { return date.text; }
    };
    return std::visit(ToText{}, value);
}

// The type of the value itself; the empty one counts as text.
DatoType TypeOf(const Value &value)
{
    if (std::holds_alternative<bool>(value))
        return DatoType::Flag;
    if (std::holds_alternative<Date>(value))
        return DatoType::Date;
    const bool isNumber =
        std::holds_alternative<std::int64_t>(value) || std::holds_alternative<double>(value);
    return isNumber ? DatoType::Number : DatoType::Text;
}

std::string Literal(const Value &value)
{
    const auto type = TypeOf(value);
    if (type == DatoType::Text)
        return LiteralOf(runtime::Replace(TextForm(value), "'", "''"), type);
    return LiteralOf(value, type);
}

// `text`; the middle of a long one is replaced by a count of its characters.
std::string ShortText(std::string_view text)
{
    constexpr int kKeptAtEachEnd = 90;
    const std::size_t characters = runtime::CountCharacters(text);
    if (characters <= kLongestLiteral)
        return std::string(text);
    std::size_t tail = text.size();
    for (int count = 0; count < kKeptAtEachEnd;
         count += runtime::ContinuesCharacter(text[tail]) ? 0 : 1)
        --tail;
    std::string result(runtime::LeftCharacters(text, kKeptAtEachEnd));
    result.append(" (... ").append(std::to_string(characters - 2 * kKeptAtEachEnd));
    result.append(" characters left out ...) ").append(text.substr(tail));
    return result;
}

std::string ShortLiteral(const Value &value)
{
    const auto *text = std::get_if<std::string>(&value);
    return Literal(text != nullptr ? Value(ShortText(*text)) : value);
}

// Fills the places of a statement with the values, one after the other.
class Filler
{
public:
    Filler(const Params &params, const Marker &marker) : m_marker(marker)
    {
        if (const auto *values = std::get_if<std::vector<Value>>(&params))
            m_values = *values;
        else if (const auto *value = std::get_if<Value>(&params))
            m_values = {value, 1};
    }

    // Appends `words`, in which each marker takes a value.
    void FillSyntax(std::string_view words)
    {
        for (;;) {
            const auto at = words.find(m_marker.text);
            if (at == std::string_view::npos || (m_values.empty() && !IsLeftOverEmpty()))
                break;
            statement.text += words.substr(0, at);
            statement.values.push_back({statement.text.size(), TakeFilled()});
            statement.text += kValuePlace;
            words.remove_prefix(at + m_marker.text.size());
        }
        statement.text += words;
    }

    Statement statement;

private:
    [[nodiscard]] bool IsLeftOverEmpty() const { return m_marker.leftOver == LeftOver::IsEmpty; }

    const Value *Take()
    {
        if (m_values.empty())
            return nullptr;
        const Value *value = &m_values.front();
        m_values = m_values.subspan(1);
        return value;
    }

    // The next value. When it contains the marker, the later values replace the markers in it.
    Value TakeFilled()
    {
        const Value *value = Take();
        if (value == nullptr)
            return std::string();
        const auto *text = std::get_if<std::string>(value);
        if (text == nullptr || text->find(m_marker.text) == std::string::npos)
            return *value;
        return FillText(*text);
    }

    std::string FillText(std::string_view first)
    {
        std::string filled;
        std::deque<std::string> forms;                // of values that are no texts
        std::vector<std::string_view> open = {first}; // the rest of each text, innermost last
        while (!open.empty()) {
            const std::string_view rest = open.back();
            const auto at = rest.find(m_marker.text);
            const Value *value = at == std::string_view::npos ? nullptr : Take();
            if (at == std::string_view::npos || (value == nullptr && !IsLeftOverEmpty())) {
                filled += rest;
                open.pop_back();
                continue;
            }
            filled += rest.substr(0, at);
            open.back().remove_prefix(at + m_marker.text.size());
            if (value == nullptr)
                continue;
            const auto *text = std::get_if<std::string>(value);
            open.emplace_back(text != nullptr ? *text : forms.emplace_back(TextForm(*value)));
        }
        return filled;
    }

    const Marker &m_marker;
    std::span<const Value> m_values; // those not taken yet
};

} // namespace

std::string LiteralOf(const Value &value, DatoType type, int width)
{
    const std::string text = TextForm(value);
    switch (type) {
    case DatoType::Text:
        return "'" +
               std::string(width >= 1
                               ? runtime::LeftCharacters(text, static_cast<std::size_t>(width))
                               : text) +
               "'";
    case DatoType::Flag: // any number other than 0 is true
        return runtime::LeadingNumber(text) != 0 ? "-1" : "0";
    case DatoType::Date:
        return "#" + text + "#";
    default:
        return std::string(runtime::Trim(text));
    }
}

StatementKind KindOf(std::string_view statement)
{
    // The upper case of two letters outside ASCII is an ASCII letter: the dotless i and the long s.
    std::string upper;
    if (statement.find("\u0131") != std::string_view::npos ||
        statement.find("\u017F") != std::string_view::npos) {
        upper = runtime::UpperText(statement);
        statement = upper;
    }
    if (HasWord(statement, "SELECT"))
        return kSelect;
    if (HasWord(statement, "INSERT"))
        return kInsert;
    if (HasWord(statement, "DELETE"))
        return kDelete;
    return HasWord(statement, "UPDATE") ? kUpdate : kOther;
}

Statement SubstituteParams(std::string_view words, const Params &params, const Marker &marker)
{
    if (marker.text.empty())
        return Statement(words);
    Filler filler(params, marker);
    std::size_t from = 0;
    for (const Token &token : TokensOf(words)) {
        if (token.kind != TokenKind::Text)
            continue;
        const auto at = static_cast<std::size_t>(token.text.data() - words.data());
        filler.FillSyntax(words.substr(from, at - from));
        filler.statement.text += token.text;
        from = at + token.text.size();
    }
    filler.FillSyntax(words.substr(from));
    return std::move(filler.statement);
}

std::string ReadableText(const Statement &statement)
{
    const std::string_view text = statement.text;
    std::string readable;
    std::size_t from = 0; // the text before it is in `readable` already
    for (const Token &token : TokensOf(statement)) {
        const auto at = static_cast<std::size_t>(token.text.data() - text.data());
        if (token.kind == TokenKind::Placed) {
            readable.append(text.substr(from, at - from));
            readable += ShortLiteral(statement.values[token.valueIndex].value);
            from = at + kValuePlace.size();
        } else if (token.kind == TokenKind::Text) {
            readable.append(text.substr(from, at + 1 - from));
            readable += ShortText(token.text.substr(1, token.text.size() - 2)) + "'";
            from = at + token.text.size();
        }
    }
    readable += text.substr(from);
    return readable;
}

std::vector<Value> StoredValues(const Params &params)
{
    if (const auto *values = std::get_if<std::vector<Value>>(&params); values && !values->empty())
        return *values;
    const auto *value = std::get_if<Value>(&params);
    return {value ? *value : Value(std::string())};
}

} // namespace catalogue
