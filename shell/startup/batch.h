// shell/startup/batch.h - the job that the program does when it is given file names: catalogue MP3
// files, take text files as lyrics, and append a summary to `Solution.txt` in the program's folder.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell
{

inline constexpr std::string_view kSummaryName = "Solution.txt";

// The arguments as the one text that RunBatch takes: each in double quotes, one blank between.
// `paths` are absolute already.
std::string QuoteArguments(const std::vector<std::string> &paths);

// Works through `arguments` (see QuoteArguments; a single path needs no quotes) and appends the
// summary, which names a song as added or updated only when its row is safe in the catalogue.
// Returns: whether the catalogue took the row of each song that could be read. When a signal asks
// for the end, the element under way is finished, the summary tells what was done, and EndRequested
// (platform/endrequest.h) is thrown. Errors: FileError when the summary cannot be written; those of
// AddLyricsFromTXT.
bool RunBatch(std::string_view arguments);

} // namespace shell
