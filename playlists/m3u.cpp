#include "playlists/m3u.h"

#include "platform/disk/wholefiles.h"
#include "runtime/codepage.h"
#include "runtime/text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace playlists
{

namespace
{

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHead = "#EXTM3U";
constexpr std::string_view kSongLine = "#EXTINF";
constexpr std::string_view kBetween = "%%%";
constexpr long long kHeadLength = 9; // including its line end

// The one-based position of ".MP" in any letter case; 0 when there is none. No character outside
// ASCII has one of these letters as its upper case.
long long FindExtension(std::string_view line)
{
    for (std::size_t at = line.find('.'); at != std::string_view::npos; at = line.find('.', at + 1))
        if (at + 2 < line.size() && (line[at + 1] | 0x20) == 'm' && (line[at + 2] | 0x20) == 'p')
            return static_cast<long long>(at) + 1;
    return 0;
}

// Removes the first line and its end from `rest` and returns it.
std::string_view TakeLine(std::string_view &rest)
{
    const std::size_t length = std::min(rest.find_first_of(kLineEnd), rest.size());
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(length);
    if (rest.starts_with(kLineEnd))
        rest.remove_prefix(kLineEnd.size());
    else if (!rest.empty())
        rest.remove_prefix(1);
    return line;
}

bool IsBlank(std::string_view line)
{
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

bool IsComment(std::string_view line)
{
    return line.starts_with('#') && line.find(kSongLine) == std::string_view::npos &&
           FindExtension(line) == 0;
}

bool IsHead(std::string_view line)
{
    return runtime::EqualAscii(line.substr(0, kHead.size()), kHead) &&
           (line.size() == kHead.size() || line[kHead.size()] == ' ' || line[kHead.size()] == '\t');
}

// The parts between the line ends, also the part after the last one.
std::vector<std::string_view> LinesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    for (;;) {
        const std::size_t end = text.find(kLineEnd);
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + kLineEnd.size());
    }
}

M3UEntry EntryOf(std::string_view line)
{
    std::string clean;
    if (line.find('\0') != std::string_view::npos) {
        std::remove_copy(line.begin(), line.end(), std::back_inserter(clean), '\0');
        line = clean;
    }
    const std::size_t nameEnd = line.find(kBetween);
    if (nameEnd == std::string_view::npos)
        return {std::string(), std::string(line)};
    const std::string_view behind = line.substr(nameEnd + kBetween.size());
    return {std::string(line.substr(0, nameEnd)),
            std::string(behind.substr(0, behind.find(kBetween)))};
}

} // namespace

std::string ReadM3UFile(const std::string &path)
{
    std::error_code failure;
    if (std::filesystem::file_size(path, failure) > kMaxListBytes || failure)
        return {};
    const auto bytes = platform::ReadRegularFile(path, kMaxListBytes + 1);
    if (!bytes || bytes->size() > kMaxListBytes)
        return {};
    return PrepareM3UText(*bytes);
}

std::string PrepareM3UText(std::string_view fileBytes)
{
    if (fileBytes.starts_with(runtime::kByteOrderMark))
        fileBytes.remove_prefix(runtime::kByteOrderMark.size());
    if (fileBytes.find_first_not_of('\0') == std::string_view::npos)
        return {};
    std::string text(kHead);
    text.append(kLineEnd);
    text.reserve(fileBytes.size() + fileBytes.size() / 16);
    for (bool isFirst = true; !fileBytes.empty();) {
        const std::string_view line = TakeLine(fileBytes);
        if (IsBlank(line))
            continue;
        if (std::exchange(isFirst, false) && IsHead(line))
            continue;
        if (!IsComment(line))
            text.append(line).append(kLineEnd);
    }
    return text;
}

void ParseM3UText(std::string &text, std::string &result)
{
    text.erase(0, static_cast<std::size_t>(kHeadLength));
    const std::vector<std::string_view> lines = LinesOf(text);
    const std::size_t count = lines.size() - 1;
    std::string entries;
    entries.reserve(text.size() * 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view line = lines[i];
        const long long mark = runtime::InStr(1, line, kSongLine);
        if (mark > 0) {
            const long long comma = runtime::InStr(mark, line, ",");
            entries.append(runtime::Mid(line, comma + 1)).append(kBetween);
            entries.append(lines[++i]);
        } else {
            entries.append(runtime::Left(line, FindExtension(line) - 1)).append(kBetween);
            entries.append(line);
        }
        entries.append(kLineEnd);
    }
    result = std::move(entries);
}

std::vector<M3UEntry> EntriesOfM3U(std::string_view result)
{
    std::vector<M3UEntry> entries;
    const std::vector<std::string_view> lines = LinesOf(result);
    entries.reserve(lines.size() - 1);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
        entries.push_back(EntryOf(lines[i]));
    return entries;
}

std::string EntryPath(std::string_view path, std::string_view listFolder,
                      std::string_view playerDrive)
{
    const bool isWhole =
        (path.size() > 1 && path[1] == ':') || path.starts_with("\\\\") || path.starts_with('/');
    if (isWhole)
        return std::string(path);
    return std::string(path.starts_with('\\') ? playerDrive : listFolder).append(path);
}

} // namespace playlists
