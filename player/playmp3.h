// player/playmp3.h - plays the song of a list's row.
#pragma once

#include "ui/controls/inputs/keyedlist.h"

#include <string>

namespace player
{

// Starts the player if it does not run, and plays the song, which is added to the player's list if
// it is not there. `list` contains the song's row, selected: its sub-item "Label" is the name of
// the disk, which a box asks for when the song is on a removable disk that is not mounted; the
// player is not used then.
// Lets events run while it waits for the player; a call meanwhile replaces the song and returns at
// once. At the end the information panel is updated, if `list` is that of the main window.
// Errors: kFileNotFound when the player is not installed or does not accept the file, and when it
// does not answer after three attempts of 10 s to start it; kOverflow (PlaceInPlaylist).
void PlayMP3File(const std::string &path, ui::KeyedList &list);

// Ends all waits of PlayMP3File; nothing is played any more. For the end of the program.
void EndPlaying();

// Sets the module's state to that at the start of the program; for tests.
void ResetPlayMP3();

} // namespace player
