#include "app/playerport.h"

#include "platform/player/audacious.h"
#include "platform/player/unknownplayer.h"
#include "shell/settings.h"

namespace app
{

namespace
{

template <class Port>
std::unique_ptr<platform::Player> Make()
{
    return std::make_unique<Port>();
}

struct KnownPlayer {
    const char *name;
    std::unique_ptr<platform::Player> (*make)();
};

// The first one is the default.
constexpr KnownPlayer kPlayers[] = {
    {"Audacious", Make<platform::player::AudaciousPlayer>},
};

} // namespace

std::string PlayerName()
{
    return shell::GetSetting("Extras", "Player", kPlayers[0].name);
}

std::unique_ptr<platform::Player> MakePlayer(const std::string &name)
{
    std::string known;
    for (const KnownPlayer &player : kPlayers) {
        if (name == player.name)
            return player.make();
        known += (known.empty() ? "" : ", ") + std::string(player.name);
    }
    return std::make_unique<platform::player::UnknownPlayer>(name, known);
}

} // namespace app
