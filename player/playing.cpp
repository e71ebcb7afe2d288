#include "player/playing.h"

#include "platform/machine.h"
#include "platform/player.h"
#include "runtime/numbers.h"

namespace player
{

namespace
{

constexpr std::int32_t kPaused = 3;
constexpr std::int32_t kLoaded = 1; // the bit that playing and paused share

// The player, when it runs; else null.
platform::Player *RunningPlayer()
{
    platform::Player *player = platform::TheMachine().player;
    return player != nullptr && player->IsRunning() ? player : nullptr;
}

std::int16_t ListIndex(platform::Player &player, const std::string &path)
{
    if (player.IsInPlaylist(path))
        return player.PlaylistIndexOf(path);
    player.EnqueueFile(path);
    return player.PlaylistLength();
}

} // namespace

std::string ReleasePlayingFile(const std::string &path, std::int32_t &state, std::int32_t &position)
{
    platform::Player *player = RunningPlayer();
    if (player == nullptr)
        return {};
    state = player->PlayingState();
    if ((state & kLoaded) == 0)
        return {};
    std::string current = player->CurrentSongPath();
    if (current == path) {
        position = runtime::RoundToInt32(player->PlayingPosition());
        player->StopTrack();
    }
    return current;
}

void RestorePlayingFile(const std::string &currentPath, const std::string &path, std::int32_t state,
                        std::int32_t position)
{
    platform::Player *player = RunningPlayer();
    if (player == nullptr || path != currentPath)
        return;
    player->SetPlaylistPosition(ListIndex(*player, path));
    player->PlayTrack();
    player->JumpToTime(runtime::RoundToInt32(position / 1000.0), 0);
    if (state == kPaused)
        player->PauseTrack();
}

} // namespace player
