// lyrics/install.h - the lyrics windows of the program: the one that follows the song that plays,
// and those in which times are set, side by side. Their forms are kept here.
#pragma once

#include <string>
#include <string_view>

namespace lyrics
{

// Gives the monitor of the player its lyrics window, and registers the command that shows it. Once,
// before the main window is loaded.
void Install();

// What the monitor calls. ShowLyrics puts lyrics (file bytes) in the place of those of another
// song; `title` names the song. The window takes the keyboard only where the user asked for it by
// the command. CloseLyrics closes the window, whether open or not. Errors: ShowLyrics
// kNonModalOverModal (401) while a modal window is up; the window is closed then.
void ShowLyrics(std::string_view title, std::string_view lyrics);
void CloseLyrics();

// Opens another window, in which the times of the lyrics of `file` are set. Errors: those of
// SetTimes. Without a file the user is told that no song plays.
void OpenTimeSetting(const std::string &file);

// Writes all drafts that wait: the session may be about to end.
void FlushDrafts();

// Closes all windows and forgets their forms.
void ForgetForms();

} // namespace lyrics
