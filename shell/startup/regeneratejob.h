// shell/startup/regeneratejob.h - the regeneration from the command line: the same run as from the
// window, with its progress on standard output.
#pragma once

#include <string>

namespace shell
{

// Regenerates `folder`, an absolute path; separators at its end are cut. It becomes the global
// `MP3Directory` for this run, nothing is stored. On a terminal one line counts, else a plain line
// comes every second; at the end it says how many files were met and where the report is.
// Files that could not be added are named on standard error as they are met.
// Returns: whether the catalogue took the row of each file that could be read, and could be emptied
//          where the settings ask for that.
// Errors: those of catalogue::ListRefresh.
bool RunRegenerateJob(const std::string &folder);

} // namespace shell
