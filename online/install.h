// online/install.h - connects this area with the main window: the check for newer versions, tips,
// support and the version history.
#pragma once

#include "online/version/versioninfo.h"

#include <memory>

namespace online
{

// Registers the commands of the area and takes the two timers of the main window for the version
// check. To be called before the main window is loaded. `drive` makes the window system run a timer
// as long as its result exists.
// Returns: what the area keeps during the run; to be released after the main window.
[[nodiscard]] std::shared_ptr<void> Install(const DriveTimer &drive);

// Shows the version history modally; for the button of the about box.
void ShowHistory();

} // namespace online
