// shell/startup/batch.h - the job that the program does when it is given file names: catalogue MP3
// files, take text files as lyrics, and append a summary to `Solution.txt` in the program's folder.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell
{

inline constexpr std::string_view kSummaryName = "Solution.txt";

// The elements of arguments that come as one text: the pieces between occurrences of a double
// quote, a blank and a double quote; in each a blank for every double quote left, blanks at its
// ends cut. The command line is no such text: it hands its elements over as they are.
std::vector<std::string> SplitArguments(std::string_view arguments);

// Works through the elements, each one path, and appends the summary, which names a song as added
// or updated only when its row is safe in the catalogue, and shows the control characters of a path
// as digits (ShownText, runtime/text.h). Returns: whether the catalogue took the row of each song
// that could be read. When a signal asks for the end, the element under way is finished, the
// summary says what was done, and EndRequested (platform/endrequest.h) is thrown. Errors:
// FileError when the summary cannot be written; those of AddLyricsFromTXT.
bool RunBatch(const std::vector<std::string> &elements);

} // namespace shell
