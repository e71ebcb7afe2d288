#include "platform/inireader.h"

#include "platform/disk/files.h"
#include "platform/disk/wholefiles.h"
#include "runtime/codepage.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <unordered_set>

namespace platform
{

namespace
{

constexpr std::size_t kMaxFileBytes = 4u << 20;

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

// Removes the first line from `text` and returns it. CR LF gives an extra empty line, which has no
// meaning.
std::string_view TakeLine(std::string_view &text)
{
    const auto end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

// The name of the section that begins with `line`; nullopt when none does.
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

// The whole lines of a file's beginning, as UTF-8.
std::string TextOfFile(std::string bytes)
{
    if (bytes.size() > kMaxFileBytes) {
        const auto lastLineEnd = bytes.find_last_of("\r\n");
        bytes.resize(lastLineEnd == std::string::npos ? 0 : lastLineEnd);
    }
    if (bytes.starts_with(runtime::kByteOrderMark))
        bytes.erase(0, runtime::kByteOrderMark.size());
    return runtime::IsUtf8(bytes) ? bytes : runtime::TextOfBytes(bytes);
}

// Neither of the two contains a line end.
std::string EntryName(std::string_view section, std::string_view key)
{
    return runtime::UpperText(section) + "\n" + runtime::UpperText(key);
}

// The file that was read last.
struct LastRead {
    FileIdentity identity;
    int codePage = 0;
    bool isSettled = false; // a later change of the file would also change the identity
    std::string text;
    IniEntries entries; // views into the text
};

// The entries of the file; null when it cannot be read.
const IniEntries *EntriesOfFile(const std::string &path)
{
    static LastRead last;
    FileIdentity identity;
    Files &files = SystemFiles();
    const std::int64_t nowNs = files.StampClockNs();
    if (files.Identify(path, identity) != 0 || identity.kind != FileKind::Regular)
        return nullptr;
    if (last.isSettled && last.identity == identity && last.codePage == runtime::CodePage())
        return &last.entries;
    auto bytes = ReadRegularFile(path, kMaxFileBytes + 1);
    if (!bytes)
        return nullptr;
    last.isSettled = false;
    last.text = TextOfFile(std::move(*bytes));
    last.entries = ParseIni(last.text);
    last.identity = identity;
    last.codePage = runtime::CodePage();
    last.isSettled = WasSettled(identity, nowNs);
    return &last.entries;
}

} // namespace

IniEntries ParseIni(std::string_view text)
{
    IniEntries entries;
    std::unordered_set<std::string> seen; // sections, in upper case
    std::string_view section;
    bool counts = false;
    while (!text.empty()) {
        const std::string_view line = Cut(TakeLine(text));
        if (const auto name = SectionName(line)) {
            section = *name;
            counts = seen.insert(runtime::UpperText(section)).second;
            continue;
        }
        const auto equals = line.find('=');
        if (!counts || line.starts_with(';') || equals == std::string_view::npos)
            continue;
        entries.try_emplace(EntryName(section, Cut(line.substr(0, equals))),
                            WithoutQuotes(Cut(line.substr(equals + 1))));
    }
    return entries;
}

std::optional<std::string_view> FindIniValue(const IniEntries &entries, std::string_view section,
                                             std::string_view key)
{
    const auto found = entries.find(EntryName(section, key));
    return found == entries.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> ReadIniText(const std::string &path, std::string_view section,
                                       std::string_view key, std::size_t maxCharacters)
{
    if (path.ends_with(runtime::PathSeparator)) // a folder: no file was chosen
        return std::nullopt;
    const IniEntries *entries = EntriesOfFile(path);
    const auto value = entries == nullptr ? std::nullopt : FindIniValue(*entries, section, key);
    if (!value)
        return std::nullopt;
    return std::string(runtime::LeftCharacters(*value, maxCharacters));
}

} // namespace platform
