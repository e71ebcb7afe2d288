// shell/startup/regeneratejob.h - the regeneration from the command line: the same run as from the
// window, with its progress on standard output.
#pragma once

#include <string>

namespace shell
{

// Regenerates `folder`, an absolute path; separators at its end are cut. It becomes the global
// `MP3Directory` for this run, nothing is stored. On a terminal one line counts, else a plain line
// comes every second; at the end it is told how many files were met and where the report is.
// Errors: those of catalogue::ListRefresh.
void RunRegenerateJob(const std::string &folder);

} // namespace shell
