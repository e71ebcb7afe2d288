// playlists/m3u.h - reads M3U lists: from the bytes of the file to its entries. No state; only
// ReadM3UFile reads a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace playlists
{

// A larger file is not taken as a list.
inline constexpr std::size_t kMaxListBytes = 64u << 20;

// One song of a list. Both texts are bytes of the file, in the encoding of the list.
struct M3UEntry {
    std::string denomination; // the name to show
    std::string path;         // as it is in the list
};

// The text of a list file, as PrepareM3UText returns it. Empty when the file cannot be read, is not
// a regular file, is larger than kMaxListBytes, or is empty or contains only NULs.
std::string ReadM3UFile(const std::string &path);

// Makes the bytes of a list file ready for ParseM3UText: removes a byte order mark; each line end
// (CR LF, CR or LF) becomes CR LF, and the last line gets one; the first line becomes the head
// "#EXTM3U" (it is added if it is missing, and other text in that line is removed); blank lines and
// comments are removed. A comment is a line that begins with "#" and contains neither "#EXTINF" nor
// ".MP" in any letter case.
// Returns: the empty text for a file that is empty or contains only NULs.
std::string PrepareM3UText(std::string_view fileBytes);

// Removes the head, the first 9 bytes, from `text`, and sets `result` to one line for each song,
// which ends with CR LF: the name to show, "%%%", the path. A line with "#EXTINF" has the name:
// everything after the first comma that follows (the whole line when there is no comma); the next
// line has its path. Any other line is a path; its name is the text before the first ".MP" in any
// letter case. Text after the last CR LF is ignored.
// Errors: kInvalidCall for a line with neither; `result` is then unchanged, also without the songs
// before that line.
void ParseM3UText(std::string &text, std::string &result);

// The songs in a result of ParseM3UText. NULs are removed; a line without "%%%" is a path without a
// name, and of more than two parts only the first two are used.
std::vector<M3UEntry> EntriesOfM3U(std::string_view result);

// The full path of an entry. A path with ":" as its second character, or beginning with two
// back-slashes or with "/", is not changed; one that begins with one back-slash is appended to
// `playerDrive`; any other is appended to `listFolder`, which ends with a separator.
std::string EntryPath(std::string_view path, std::string_view listFolder,
                      std::string_view playerDrive);

} // namespace playlists
