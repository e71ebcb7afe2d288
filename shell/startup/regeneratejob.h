// shell/startup/regeneratejob.h - the regeneration from the command line: the same as from the
// window, with its progress on standard output.
#pragma once

#include <string>

namespace shell
{

// Regenerates `folder`, an absolute path; separators at its end are cut. During this run it is the
// global `MP3Directory`; no setting is stored. On a terminal one line shows the count; otherwise a
// new line is written every second. At the end the number of files and the path of the report are
// written. Files that could not be added are named on standard error at once.
// Returns: whether the catalogue has the row of each file that could be read, and could be emptied
// when the settings ask for that.
// Errors: those of catalogue::ListRefresh.
bool RunRegenerateJob(const std::string &folder);

} // namespace shell
