// app/windowrun.h - the program with its windows: their ports, start-up, the event loop, an orderly
// end.
#pragma once

#include <string>
#include <vector>

namespace app
{

// Whether there is a window system to show windows on.
bool HasDisplay();

// Runs the program in its windows until the user, the session or a signal ends it. A second start
// with the same catalogue raises the first one's window and ends at once.
// Returns: the exit status: 0; 1 for a refused catalogue or a failed start.
int RunInWindows(int argc, char **argv);

// Whether windows would come up. The toolkit ends a process whose display does not answer, so a
// child tries: it takes the time of an empty program. To be called before anything else is open.
bool CanOpenWindows(int argc, char **argv);

// Does the batch over `paths` while the splash is shown, with boxes in windows: for a start from
// the desktop, where no one would see the terminal's. A signal ends it between two files, after the
// summary. Returns: the exit status: 0 when the summary was written, 1 refused or failed, 128 + the
//          signal's number.
int RunBatchInWindows(int argc, char **argv, const std::vector<std::string> &paths);

} // namespace app
