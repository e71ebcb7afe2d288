// player/playing.h - the position of a song in the player's list; and stopping a song while its
// file is rewritten, and playing it again from the same position. The latter two do nothing without
// a player. No state.
#pragma once

#include <cstdint>
#include <string>

namespace player
{

// The index to select for `path` in the player's list: its own position; -1 when it is only a part
// of a longer path there. If it is not there, it is added, and the result is the new length of the
// list, which is one more than the index of the new entry. Lets events run.
// Errors: kFileNotFound when the player does not accept the file; kOverflow when the list is too
// long for an index of 16 bits; nothing is added then.
std::int16_t PlaceInPlaylist(const std::string &path);

// Stops the player if it is playing this very file, or has paused in it.
// Returns: the path of the selected song; empty when the player does not run or is stopped.
// `state`: set to 0, 1 or 3 when it runs. `position`: set, in ms, when it was stopped here.
std::string ReleasePlayingFile(const std::string &path, std::int32_t &state,
                               std::int32_t &position);

// Plays `path` again from `position` (ms; only whole seconds count), and pauses if `state` is 3.
// Does so only when the player runs and `currentPath`, the result of ReleasePlayingFile, is `path`.
// Errors: those of PlaceInPlaylist.
void RestorePlayingFile(const std::string &currentPath, const std::string &path, std::int32_t state,
                        std::int32_t position);

} // namespace player
