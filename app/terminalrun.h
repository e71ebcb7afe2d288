// app/terminalrun.h - the program without windows: sets up the ports of a terminal, does one job
// and ends.
#pragma once

#include "app/options.h"

namespace app
{

// Does the batch or the regeneration that `options` asks for; message boxes become lines in the
// terminal. At the end the catalogue and the settings are closed in order, also when a signal or an
// error has ended the job; an error is shown.
// Returns: the exit status: 0 done, 1 refused or failed, 3 rows lost, 128 + the number of the
// signal.
int RunInTerminal(const Options &options);

} // namespace app
