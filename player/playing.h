// player/playing.h - a song's place in the player's list; and how a song is taken out of the
// player's hands while its file is rewritten, and brought back to where it was. Without a player
// the latter do nothing. No state.
#pragma once

#include <cstdint>
#include <string>

namespace player
{

// The index to select for `path` in the player's list: its own place; -1 when it is there only as a
// part of a longer path. A song that is not there is added, and the index is then the list's new
// length, one past the entry just added. Lets events run.
// Errors: kFileNotFound when the player takes no such file; kOverflow when the list is longer than
//         16 bits count, and nothing is added.
std::int16_t PlaceInPlaylist(const std::string &path);

// Stops the player if it plays this very file, or has paused in it.
// Returns: the path that the player has selected; empty when it does not run or is stopped.
// `state`: set to 0, 1 or 3 when it runs. `position`: set, in ms, when it was stopped here.
std::string ReleasePlayingFile(const std::string &path, std::int32_t &state,
                               std::int32_t &position);

// Plays `path` again from `position` (ms, to the second), paused if `state` is 3; if the player
// runs and `currentPath`, the answer of the other, is `path`. Errors: those of PlaceInPlaylist.
void RestorePlayingFile(const std::string &currentPath, const std::string &path, std::int32_t state,
                        std::int32_t position);

} // namespace player
