// platform/inireader.h - reads one value of an INI text file that users edit, by the rules of the
// platform's INI reader. The file that was read last is kept in memory, and read again after it has
// changed.
//
// A line "[name]" begins a section; "key=value" is an entry; a line that begins with ";" is a
// comment; any other line is ignored. Lines end in CR, LF or both. Blanks and control characters
// around a line, a name, a key and a value are cut, then one pair of quotation marks (both ' or
// both ") around a value. Names and keys compare without regard to letter case. Of several sections
// with the same name only the first is used, and in it only the first entry of a key.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace platform
{

// The value of `key` in `section` of the file at `path`, as UTF-8, its first `maxCharacters`
// characters. A file that is not valid UTF-8 is read in the code page (runtime/codepage.h).
// Returns: nothing when the file has no such entry, is missing, is not a regular file, or cannot be
// read. Only the whole lines within the first 4 MiB of a file are read.
std::optional<std::string> ReadIniText(const std::string &path, std::string_view section,
                                       std::string_view key, std::size_t maxCharacters);

// The entries of a text, by section and key in upper case with a line end between them; the values
// are views into the text.
using IniEntries = std::unordered_map<std::string, std::string_view>;

// The entries of the UTF-8 text of a file.
IniEntries ParseIni(std::string_view text);

// The value of `key` in `section`, its whole text. Returns: nothing when there is no such entry.
std::optional<std::string_view> FindIniValue(const IniEntries &entries, std::string_view section,
                                             std::string_view key);

} // namespace platform
