// player/install.h - connects the player's commands and timers with the main window.
#pragma once

namespace player
{

// Registers the commands, how a song's row is opened, and the handlers of two timers of the main
// window. To be called once, before the main window is loaded.
void Install();

} // namespace player
