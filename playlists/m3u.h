// playlists/m3u.h - the text of an M3U list, from the file's bytes to its entries. No state; only
// ReadM3UFile touches a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace playlists
{

// A larger file is no list.
inline constexpr std::size_t kMaxListBytes = 64u << 20;

// One song of a list. Both are bytes of the file, in the list's own encoding.
struct M3UEntry {
    std::string denomination; // the name to show
    std::string path;         // as the list has it
};

// The text of the list file, as PrepareM3UText gives it. Empty when the file cannot be read, is no
// regular file, is larger than kMaxListBytes, or holds nothing or NULs only.
std::string ReadM3UFile(const std::string &path);

// The bytes of a list file as ParseM3UText expects them: a byte order mark is cut, each line end
// (CR LF, CR or LF) becomes CR LF, an open last line is closed, and the first line is the head
// "#EXTM3U": it is put in front where it is missing, and loses what follows it on its line. Blank
// lines are left out, and so are comments: lines that begin with "#" and hold neither "#EXTINF" nor
// ".MP" in any letter case. Empty for an empty file and for one of NULs only.
std::string PrepareM3UText(std::string_view fileBytes);

// Cuts the head, the first 9 bytes, off `text`, and gives `result` one line for each song, closed
// by CR LF: the name to show, "%%%", the path. A line with "#EXTINF" gives the name, all that
// follows its first comma from there on (the whole line when there is no comma), and the line below
// it the path; any other line is a path, and its name is what comes before the first ".MP" in any
// letter case. What follows the last CR LF is no line.
// Errors: kInvalidCall for a line with neither; `result` stays as it was then, without the songs
//         before that line too.
void ParseM3UText(std::string &text, std::string &result);

// The songs of a result of ParseM3UText. NULs are cut; a line without "%%%" is a path without a
// name, and of more than two parts the first two count.
std::vector<M3UEntry> EntriesOfM3U(std::string_view result);

// The path of an entry: one with ":" as its second character, or that begins with two back-slashes
// or with "/", stays as it is; one that begins with one back-slash stands behind `playerDrive`; any
// other one behind `listFolder`, which ends in a separator.
std::string EntryPath(std::string_view path, std::string_view listFolder,
                      std::string_view playerDrive);

} // namespace playlists
