// app/modulehooks.h - connects the calls that point up: from reading and writing of songs to the
// catalogue and to the player.
#pragma once

namespace app
{

// Sets the hooks of the lower modules. To be called once, before Main runs.
void ConnectModules();

} // namespace app
