// player/install.h - brings the player's commands and timers into the main window.
#pragma once

namespace player
{

// Registers the commands, the opening of a song's row, and the handlers of the main window's two
// timers. Once, before the main window is loaded.
void Install();

} // namespace player
