// online/version/versionfile.h - the two files on the web that list the newest versions. Each is
// text with CR LF line ends, in two blocks:
//   1. database version ":" date, one in each line; the first line without a ":" ends the block;
//   2. from that line on one line for each tool; its last word (after the last blank) is the
//   version.
// Texts are UTF-8. A part of a version that is not a number is compared by the digits at its
// beginning. No state.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace online
{

// One line of the first block.
struct DatabaseLine {
    std::string version; // before the first ":"
    std::string date;    // after the first ":", unchanged
};

struct VersionFile {
    std::vector<DatabaseLine> databases; // in the order of the file
    std::vector<std::string> tools;      // the version in each line of the second block
};

VersionFile ParseVersionFile(std::string_view text);

// Whether the version `candidate` is greater than `current`. The numbers between the dots are
// compared from the left, whatever their length; a missing number counts as 0, and so does one that
// begins with no digit. "1.10" is newer than "1.9.3"; "1.6" is not newer than "1.6.0".
bool IsNewer(std::string_view candidate, std::string_view current);

} // namespace online
