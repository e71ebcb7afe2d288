// shell/startup/batch.h - the batch: what the program does when it is started with names of files.
// It adds MP3 files to the catalogue, imports text files as lyrics, and appends a summary to
// `Solution.txt` in the program's folder.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell
{

inline constexpr std::string_view kSummaryName = "Solution.txt";

// The elements of an argument text: the parts between each `" "` (double quote, blank, double
// quote). In each part a double quote becomes a blank, and blanks at both ends are cut. Arguments
// of the command line are not joined and split in this way.
std::vector<std::string> SplitArguments(std::string_view arguments);

// Handles the elements, each of which is one path, and appends the summary. It reports a song as
// added or updated only when its row is safe in the catalogue, and shows control characters of a
// path as digits (ShownText, runtime/utf8.h). When a signal asks the program to end, the current
// element is finished, the summary says what was done, and EndRequested (platform/endrequest.h) is
// thrown.
// Returns: whether the catalogue has the row of every song that could be read.
// Errors: FileError when the summary cannot be written; those of AddLyricsFromTXT.
bool RunBatch(const std::vector<std::string> &elements);

} // namespace shell
