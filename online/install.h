// online/install.h - the area's part in the main window: the check for newer versions, tips,
// support and the version history.
#pragma once

#include "online/versioninfo.h"

#include <memory>

namespace online
{

// Registers the area's commands and takes the main window's two timers for the version check;
// called before the main window is loaded. `drive` lets the window system drive a timer. Returns:
// what the area holds for the run; released after the main window.
[[nodiscard]] std::shared_ptr<void> Install(const DriveTimer &drive);

// Shows the version history modally; the about box's button.
void ShowHistory();

} // namespace online
