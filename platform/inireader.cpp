#include "platform/inireader.h"

#include "platform/posix/files.h"
#include "runtime/codepage.h"
#include "runtime/text.h"

namespace platform
{

namespace
{

constexpr std::size_t kMaxFileBytes = 4u << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c)
{
    return static_cast<unsigned char>(c) <= 0x20;
}

std::string_view Cut(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// Takes the first line off `text`. CR LF leaves an empty line behind, which means nothing.
std::string_view TakeLine(std::string_view &text)
{
    const auto end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

// The name of the section that `line` begins; nothing when it begins none.
std::optional<std::string_view> SectionName(std::string_view line)
{
    const auto end = line.find(']');
    if (line.empty() || line.front() != '[' || end == std::string_view::npos)
        return std::nullopt;
    return Cut(line.substr(1, end - 1));
}

std::string_view WithoutQuotes(std::string_view value)
{
    if (value.size() < 2 || value.front() != value.back())
        return value;
    if (value.front() != '"' && value.front() != '\'')
        return value;
    return value.substr(1, value.size() - 2);
}

// The first `count` characters of UTF-8 `text`; a byte that continues a character begins none.
std::string_view FirstCharacters(std::string_view text, std::size_t count)
{
    for (std::size_t at = 0; at < text.size(); ++at)
        if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80 && count-- == 0)
            return text.substr(0, at);
    return text;
}

// The whole lines of a file's beginning, as UTF-8.
std::string TextOfFile(std::string bytes)
{
    if (bytes.size() > kMaxFileBytes) {
        const auto lastLineEnd = bytes.find_last_of("\r\n");
        bytes.resize(lastLineEnd == std::string::npos ? 0 : lastLineEnd);
    }
    if (bytes.starts_with(kByteOrderMark))
        bytes.erase(0, kByteOrderMark.size());
    return runtime::IsUtf8(bytes) ? bytes : runtime::TextOfBytes(bytes);
}

} // namespace

std::optional<std::string_view> FindIniValue(std::string_view text, std::string_view section,
                                             std::string_view key)
{
    bool inSection = false;
    while (!text.empty()) {
        const std::string_view line = Cut(TakeLine(text));
        if (const auto name = SectionName(line)) {
            if (inSection)
                return std::nullopt; // the first section of the name has ended
            inSection = runtime::EqualText(*name, section);
            continue;
        }
        const auto equals = line.find('=');
        if (!inSection || line.starts_with(';') || equals == std::string_view::npos)
            continue;
        if (runtime::EqualText(Cut(line.substr(0, equals)), key))
            return WithoutQuotes(Cut(line.substr(equals + 1)));
    }
    return std::nullopt;
}

std::optional<std::string> ReadIniText(const std::string &path, std::string_view section,
                                       std::string_view key, std::size_t maxCharacters)
{
    auto bytes = posix::ReadRegularFile(path, kMaxFileBytes + 1);
    if (!bytes)
        return std::nullopt;
    const std::string text = TextOfFile(std::move(*bytes));
    const auto value = FindIniValue(text, section, key);
    if (!value)
        return std::nullopt;
    return std::string(FirstCharacters(*value, maxCharacters));
}

} // namespace platform
