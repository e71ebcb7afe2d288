// app/modulehooks.h - plugs together what calls up: the reader and the writer of songs, the
// catalogue and the player.
#pragma once

namespace app
{

// Fills the hooks of the modules below. Once, before Main runs.
void ConnectModules();

} // namespace app
