// app/windowrun.h - the program with its windows: their ports, start-up, the event loop, an orderly
// end.
#pragma once

namespace app
{

// Whether there is a window system to show windows on.
bool HasDisplay();

// Runs the program in its windows until the user, the session or a signal ends it. A second start
// with the same catalogue raises the first one's window and ends at once.
// Returns: the exit status: 0; 1 for a refused catalogue or a failed start.
int RunInWindows(int argc, char **argv);

} // namespace app
