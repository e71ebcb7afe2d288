// online/versionfile.h - the two files on the web that name the versions in existence. Each is text
// in CR LF lines, in two blocks:
//   1. database version ":" date, one a line; the first line without a ":" ends the block;
//   2. from that line on one line per tool, whose last word (after the last blank) is its version.
// Pure text work, no state. Texts are UTF-8; what is no version is compared as its digits are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace online
{

// One line of the first block.
struct DatabaseLine {
    std::string version; // before the first ":"
    std::string date;    // after it, as it is
};

struct VersionFile {
    std::vector<DatabaseLine> databases; // in the file's order
    std::vector<std::string> tools;      // the version that each line of the second block names
};

VersionFile ParseVersionFile(std::string_view text);

// Whether the dotted number `candidate` is greater than `current`, compared part by part from the
// left as numbers of any length; a missing part counts as 0, and so does a part without digits at
// its beginning. "1.10" is newer than "1.9.3"; "1.6" is not newer than "1.6.0".
bool IsNewer(std::string_view candidate, std::string_view current);

} // namespace online
