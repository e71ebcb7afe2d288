// app/playerport.h - the players that the program can speak to, by name.
#pragma once

#include "platform/player.h"

#include <memory>
#include <string>

namespace app
{

// The name of the player: key "Player" of section "Extras" in the settings in use.
std::string PlayerName();

// The port of the player with this name; for any other name one that says so at its first use.
std::unique_ptr<platform::Player> MakePlayer(const std::string &name);

} // namespace app
