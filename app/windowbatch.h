// app/windowbatch.h - a batch with windows, and whether there can be windows at all. In the library
// of app/windowlibrary.h, like app/windowrun.h.
#pragma once

#include <string>
#include <vector>

namespace app
{

// Whether windows can be opened. The toolkit ends a process that cannot connect to its display, so
// a child process tries it. To be called before any file is open.
bool CanOpenWindows(int argc, char **argv);

// Does the batch for `paths` while the splash is shown, with message boxes: for a start from the
// desktop, where nobody would see a terminal. A signal ends it between two files, after the
// summary.
// Returns: the exit status: 0 when the summary was written, 1 refused or failed, 3 rows lost, 128 +
// the number of the signal.
int RunBatchInWindows(int argc, char **argv, const std::vector<std::string> &paths);

} // namespace app
