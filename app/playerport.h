// app/playerport.h - the players that the program can control, by name.
#pragma once

#include "platform/player.h"

#include <memory>
#include <string>

namespace app
{

// The name of the player in use: the setting "Player" in the section "Extras"; "Audacious" when it
// is not set.
std::string PlayerName();

// The port for the player with this name. For an unknown name, a port that reports this at its
// first use.
std::unique_ptr<platform::Player> MakePlayer(const std::string &name);

} // namespace app
