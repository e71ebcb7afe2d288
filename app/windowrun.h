// app/windowrun.h - the program with its windows: sets up their ports, starts, runs the event loop
// and ends. In the library of app/windowlibrary.h, as all that needs the toolkit.
#pragma once

namespace app
{

// Runs the program in its windows until the user, the session or a signal ends it. When it runs
// already with the same catalogue, brings that window to the front and returns at once.
// Returns: the exit status: 0; 1 for a refused catalogue or a failed start.
int RunInWindows(int argc, char **argv);

} // namespace app
