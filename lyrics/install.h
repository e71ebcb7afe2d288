// lyrics/install.h - the lyrics windows of the program: one follows the song that is playing, and
// in any number of others times can be set. Their forms are kept here.
#pragma once

#include <string>
#include <string_view>

namespace lyrics
{

// Gives the player's monitor its lyrics window and registers the command that shows it. To be
// called once, before the main window is loaded.
void Install();

// What the monitor calls. ShowLyrics shows `lyrics` (file bytes) in place of those of the previous
// song; `title` names the song. The window takes the keyboard only when the user asked for it with
// the command. CloseLyrics closes the window if it is open.
// Errors: ShowLyrics fails with kNonModalOverModal (401) while a modal window is open, and closes
// the lyrics window then.
void ShowLyrics(std::string_view title, std::string_view lyrics);
void CloseLyrics();

// Opens one more window, to set the times of the lyrics of `file`. An empty `file` shows a box that
// no song is playing.
// Errors: those of SetTimes.
void OpenTimeSetting(const std::string &file);

// Writes all drafts that have not been written yet. To be called when the session may end soon.
void FlushDrafts();

// Closes all windows and destroys their forms.
void ForgetForms();

} // namespace lyrics
