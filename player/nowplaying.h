// player/nowplaying.h - shows what the player is playing: in two panels of the status bar, and in
// the lyrics window.
#pragma once

#include <functional>
#include <string>

namespace player
{

// "mm:ss / mm:ss": position and length of the current song in whole seconds; half a second is
// rounded to the even second. For 100 minutes or more only the last two digits of the minutes.
// "00:00 / 00:00" without a player. Uses the player's window that was last found
// (player/winampmod.h). `position`, if given, is set to the position in seconds.
std::string GetPlayingTimeStatus(float *position = nullptr);

// Whether the lyrics window is loaded. Only that window sets it.
extern bool LyricsWindowOpen;

// The functions of the lyrics window; the window sets them. At first they do nothing, as in a
// program without that window.
struct LyricsWindowCalls {
    // Shows the window with the lyrics of a song (file bytes, not empty). `path` is the song's
    // file, `titleLine` its artist, " - " and its title (UTF-8). The lyrics of the previous song
    // are removed first, even when the window cannot be shown. May throw kNonModalOverModal.
    std::function<void(const std::string &path, const std::string &titleLine,
                       const std::string &lyrics)>
        show;
    std::function<void()> unload; // closes the window, if it is open
};
LyricsWindowCalls &TheLyricsWindowCalls();

// The event of tmr_Playing. Does nothing when lyrics are not to be shown automatically, or when no
// player runs or it stops answering. An error when showing the lyrics ends the tick, and the next
// tick tries the song again; but when a modal window is open, the lyrics of this song are not shown
// at all.
void tmr_Playing_Timer();

// submnuShowLyricsCurrentSong: shows the lyrics of the current song, or a box that says why it
// cannot.
void submnuShowLyricsCurrentSong_Click();

// The event of tmrRefreshList: makes the player write its list again. Errors: none.
void tmrRefreshList_Timer();

// Sets the module's state to that at the start of the program; for tests.
void ResetNowPlaying();

} // namespace player
