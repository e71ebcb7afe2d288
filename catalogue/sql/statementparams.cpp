#include "catalogue/sql/statementparams.h"

#include "runtime/numbers.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>

namespace catalogue
{

namespace
{

// The place of `word` (upper case, ASCII) in `text` without regard to letter case, found in steps
// of up to the word's length: statements carry whole song texts.
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

// The first `count` characters of a UTF-8 text.
std::string_view FirstCharacters(std::string_view text, int count)
{
    std::size_t at = 0;
    for (; at < text.size(); ++at)
        if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80 && count-- == 0)
            break;
    return text.substr(0, at);
}

std::string TextForm(const Value &value)
{
    struct Former {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const std::string &text) const { return text; }
        std::string operator()(bool flag) const { return flag ? "-1" : "0"; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const { return runtime::NumberText(number); }
        std::string operator()(const Date &date) const { return date.text; }
    };
    return std::visit(Former{}, value);
}

std::string Literal(const Value &value)
{
    std::string literal;
    const auto type = TypeOf(value);
    if (type == DatoType::Text)
        return ADOclass::AddDato(runtime::Replace(TextForm(value), "'", "''"), type, 0, literal);
    return ADOclass::AddDato(value, type, 0, literal);
}

} // namespace

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

std::string ADOclass::AddDato(const Value &value, DatoType type, int width, std::string &literal)
{
    const std::string text = TextForm(value);
    switch (type) {
    case DatoType::Text:
        literal = "'";
        literal += width >= 1 ? FirstCharacters(text, width) : std::string_view(text);
        literal += "'";
        break;
    case DatoType::Flag: // any number other than 0 is true
        literal = runtime::LeadingNumber(text) != 0 ? "-1" : "0";
        break;
    case DatoType::Date:
        literal = "#" + text + "#";
        break;
    default:
        literal = runtime::Trim(text);
        break;
    }
    return literal;
}

int ADOclass::TipoConsulta(std::string_view statement)
{
    // Two letters beyond ASCII have an upper case within it: the dotless i and the long s.
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

std::string SubstituteParams(std::string_view statement, const Params &params,
                             std::string_view marker)
{
    std::string text(statement);
    if (marker.empty())
        return text;
    std::size_t from = 0; // no marker begins before this place
    const auto substitute = [&](const Value &value) {
        const auto at = text.find(marker, from);
        if (at == std::string::npos)
            return;
        text.replace(at, marker.size(), Literal(value));
        from = at - std::min(at, marker.size() - 1);
    };
    if (const auto *values = std::get_if<std::vector<Value>>(&params)) {
        for (const auto &value : *values)
            substitute(value);
    } else if (const auto *value = std::get_if<Value>(&params)) {
        substitute(*value);
    }
    return text;
}

std::vector<Value> StoredValues(const Params &params)
{
    if (const auto *values = std::get_if<std::vector<Value>>(&params); values && !values->empty())
        return *values;
    const auto *value = std::get_if<Value>(&params);
    return {value ? *value : Value(std::string())};
}

} // namespace catalogue
