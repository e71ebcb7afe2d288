// player/playing.h - gets a song out of the player's hands while its file is rewritten, and back to
// where it was. Without a player both do nothing. No state.
#pragma once

#include <cstdint>
#include <string>

namespace player
{

// Stops the player if it plays this very file, or has paused in it.
// Returns: the path that the player has selected; empty when it does not run or is stopped.
// `state`: set to 0, 1 or 3 when it runs. `position`: set, in ms, when it was stopped here.
std::string ReleasePlayingFile(const std::string &path, std::int32_t &state,
                               std::int32_t &position);

// Plays `path` again from `position` (ms, to the second), paused if `state` is 3; if the player
// runs and `currentPath`, the answer of the other, is `path`. A song that its list lacks is added;
// the place that is then selected is the list's new length, one past the entry just added.
void RestorePlayingFile(const std::string &currentPath, const std::string &path, std::int32_t state,
                        std::int32_t position);

} // namespace player
