// player/playmp3.h - from a song's row to a running song.
#pragma once

#include "ui/controls/keyedlist.h"

#include <string>

namespace player
{

// Starts the player where it does not run, and plays the song: in its place in the player's list,
// or added to it. `list` holds the song's row, selected: its sub-item "Label" names the disk in the
// prompt for a song on a removable disk that is not there; the player is then not touched.
// Lets events run while it waits for the player; a call meanwhile replaces the song and returns at
// once. The information panel is refreshed at the end, if `list` is the main window's.
// Errors: kFileNotFound when the player is not installed or takes no such file, and when it does
// not
//         answer after three attempts of 10 s to start it; kOverflow (PlaceInPlaylist).
void PlayMP3File(const std::string &path, ui::KeyedList &list);

// Ends the waits of PlayMP3File for good: nothing is played any more. For the end of the program.
void EndPlaying();

// Puts the module's state back as at the start of the program.
void ResetPlayMP3();

} // namespace player
