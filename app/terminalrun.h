// app/terminalrun.h - the program without windows: the ports of a terminal, one job, an orderly
// end.
#pragma once

#include "app/options.h"

namespace app
{

// Does the batch or the regeneration that `options` asks for, with boxes on the terminal. At the
// end the catalogue and the settings are closed in order, also when a signal asked for the end or
// an error, which is shown, ended the job. Returns: the exit status: 0 done, 1 refused or failed,
// 128 + the signal's number.
int RunInTerminal(const Options &options);

} // namespace app
