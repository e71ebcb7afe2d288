#include "player/playing.h"

#include "platform/machine.h"
#include "player/winampmod.h"
#include "runtime/error.h"
#include "runtime/numbers.h"

#include <limits>

namespace player
{

namespace
{

constexpr std::int32_t kPaused = 3; // of GetPlayingState
constexpr std::int32_t kLoaded = 1; // this bit is set when playing and when paused

} // namespace

std::int16_t PlaceInPlaylist(const std::string &path)
{
    if (platform::Player *port = platform::TheMachine().player; port != nullptr)
        port->LearnPlaylist();
    if (IsInPlaylist(path))
        return GetPlaylistIndexOf(path);
    if (GetPlaylistLength() >= std::numeric_limits<std::int16_t>::max())
        throw runtime::RuntimeError(runtime::kOverflow); // the index of the new entry would not fit
    EnqueueFile(path);
    return runtime::RoundToInt16(GetPlaylistLength());
}

std::string ReleasePlayingFile(const std::string &path, std::int32_t &state, std::int32_t &position)
{
    if (!IsWinampRunning())
        return {};
    state = GetPlayingState();
    if ((state & kLoaded) == 0)
        return {};
    std::string current = GetCurrentSongPath();
    if (current == path) {
        position = runtime::RoundToInt32(GetPlayingPosition());
        StopTrack();
    }
    return current;
}

void RestorePlayingFile(const std::string &currentPath, const std::string &path, std::int32_t state,
                        std::int32_t position)
{
    if (!IsWinampRunning() || path != currentPath)
        return;
    SetPlaylistPosition(PlaceInPlaylist(path));
    PlayTrack();
    JumpToTime(runtime::RoundToInt32(position / 1000.0), 0);
    if (state == kPaused)
        PauseTrack();
}

} // namespace player
