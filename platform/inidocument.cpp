#include "platform/inidocument.h"

#include "runtime/codepage.h"
#include "runtime/text.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr std::string_view kHexDigits = "0123456789abcdef";

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string Quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\' || c == '"')
            result.append({'\\', c});
        else if (c == '\n')
            result.append("\\n");
        else if (c == '\r')
            result.append("\\r");
        else if (IsControl(c))
            result.append({'\\', 'x', kHexDigits[byte >> 4], kHexDigits[byte & 15]});
        else
            result.push_back(c);
    }
    return result + '"';
}

// `text` as it is written to the file: plain when reading gives the same text again, else quoted.
// `special`: the characters that end a name in this position or have another meaning there.
std::string Written(std::string_view text, std::string_view special)
{
    const bool plain = runtime::Trim(text) == text && !text.starts_with('"') &&
                       std::ranges::none_of(text, IsControl) &&
                       text.find_first_of(special) == std::string_view::npos;
    return plain ? std::string(text) : Quoted(text);
}

std::string WrittenName(std::string_view section)
{
    return section.empty() ? "\"\"" : Written(section, "]");
}

std::string WrittenKey(std::string_view key)
{
    return key.empty() ? "\"\"" : Written(key, "=;#[");
}

int HexValue(char c)
{
    const auto at = kHexDigits.find(c);
    return at == std::string_view::npos ? 0 : static_cast<int>(at);
}

bool IsBlank(std::string_view line)
{
    return line.empty() || line == "\r";
}

// Removes a quoted text from the start of `line`, which begins with its quotation mark, and returns
// it. A missing closing mark counts as one at the end of the line.
std::string TakeQuoted(std::string_view &line)
{
    std::string result;
    std::size_t at = 1;
    for (; at < line.size() && line[at] != '"'; ++at) {
        if (line[at] != '\\' || at + 1 >= line.size()) {
            result.push_back(line[at]);
            continue;
        }
        const char kind = line[++at];
        if (kind == 'x' && at + 2 < line.size()) {
            result.push_back(
                static_cast<char>(HexValue(line[at + 1]) * 16 + HexValue(line[at + 2])));
            at += 2;
        } else {
            result.push_back(kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind);
        }
    }
    line.remove_prefix(std::min(line.size(), at + 1));
    return result;
}

// Removes a name, quoted or plain, and the character `end` after it from the start of `line`.
// Returns: the name; nullopt when `end` does not follow.
std::optional<std::string> TakeName(std::string_view &line, char end, IniStyle style)
{
    std::optional<std::string> name;
    if (style == IniStyle::Quoted && line.starts_with('"'))
        name = TakeQuoted(line);
    const auto at = line.find(end);
    if (at == std::string_view::npos)
        return std::nullopt;
    if (!name)
        name = runtime::Trim(line.substr(0, at));
    line.remove_prefix(at + 1);
    return name;
}

std::string ReadValue(std::string_view rest, IniStyle style)
{
    rest = runtime::Trim(rest);
    return style == IniStyle::Quoted && rest.starts_with('"') ? TakeQuoted(rest)
                                                              : std::string(rest);
}

} // namespace

IniDocument::IniDocument(std::string_view text, IniStyle style) : m_style(style)
{
    std::string section;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view rest = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        Line line{end == std::string_view::npos ? Raw(std::string(rest)) : std::string(rest),
                  section,
                  false,
                  {},
                  {}};
        if (m_lines.empty() && rest.starts_with(runtime::kByteOrderMark))
            rest.remove_prefix(runtime::kByteOrderMark.size());
        if (rest.ends_with('\r'))
            rest.remove_suffix(1);
        rest = runtime::Trim(rest);
        if (rest.starts_with('[')) {
            rest.remove_prefix(1);
            section = TakeName(rest, ']', style).value_or(section);
            line.section = section;
        } else if (!rest.starts_with(';') && !rest.starts_with('#')) {
            if (auto key = TakeName(rest, '=', style)) {
                line.entry = true;
                line.key = *std::move(key);
                line.value = ReadValue(rest, style);
            }
        }
        m_lines.push_back(std::move(line));
    }
}

std::size_t IniDocument::FindIndex(std::string_view section, std::string_view key) const
{
    const auto found = std::ranges::find_if(m_lines, [&](const Line &line) {
        return line.entry && runtime::EqualAscii(line.section, section) &&
               runtime::EqualAscii(line.key, key);
    });
    return static_cast<std::size_t>(found - m_lines.begin());
}

std::optional<std::string> IniDocument::Find(std::string_view section, std::string_view key) const
{
    const std::size_t index = FindIndex(section, key);
    if (index == m_lines.size())
        return std::nullopt;
    return m_lines[index].value;
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value)
{
    const bool isPlain = m_style == IniStyle::Plain;
    std::string entry = isPlain ? std::string(key).append("=").append(value)
                                : WrittenKey(key) + "=" + Written(value, "");
    Line line{Raw(std::move(entry)), std::string(section), true, std::string(key),
              std::string(value)};
    const std::size_t index = FindIndex(section, key);
    if (index < m_lines.size()) {
        line.section = m_lines[index].section;
        m_lines[index] = std::move(line);
        return;
    }
    std::size_t at = m_lines.size();
    while (at > 0 &&
           (IsBlank(m_lines[at - 1].raw) || !runtime::EqualAscii(m_lines[at - 1].section, section)))
        --at; // after the section's last line that is not empty
    if (at == 0 && !section.empty()) {
        const std::string name = isPlain ? std::string(section) : WrittenName(section);
        m_lines.push_back({Raw("[" + name + "]"), std::string(section), false, {}, {}});
        at = m_lines.size();
    }
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}

void IniDocument::Remove(std::string_view section, std::string_view key)
{
    for (std::size_t index; (index = FindIndex(section, key)) < m_lines.size();)
        m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(index));
}

// An entry in the form of `Line::raw`.
std::string IniDocument::Raw(std::string line) const
{
    if (m_style == IniStyle::Plain)
        line += '\r';
    return line;
}

std::string IniDocument::Text() const
{
    std::string text;
    for (const Line &line : m_lines)
        text.append(line.raw).push_back('\n');
    return text;
}

} // namespace platform
