// player/nowplaying.h - the monitor of what the player plays: the status bar's two panels, and the
// lyrics window that follows the song.
#pragma once

#include <functional>
#include <string>

namespace player
{

// "mm:ss / mm:ss": position and length of the current song, whole seconds rounded half to even; of
// a song of 100 minutes or more the last two digits of its minutes. "00:00 / 00:00" without a
// player. Asks the window of the last look (player/winampmod.h). `position`, where given, is set to
// the position in seconds.
std::string GetPlayingTimeStatus(float *position = nullptr);

// Whether the lyrics window is loaded. Written by that window alone.
extern bool LyricsWindowOpen;

// What the monitor asks of the lyrics window, which fills it in. The empty functions of the start
// stand for a program without that window.
struct LyricsWindowCalls {
    // Shows the window with a song's lyrics (file bytes, not empty). `path` is the song's file,
    // `titleLine` its artist, " - " and its title (UTF-8). The lyrics of the song before leave it
    // first, also where it cannot be shown. May throw kNonModalOverModal.
    std::function<void(const std::string &path, const std::string &titleLine,
                       const std::string &lyrics)>
        show;
    std::function<void()> unload; // closes the window, whether it is open or not
};
LyricsWindowCalls &TheLyricsWindowCalls();

// The tick of tmr_Playing. Does nothing while the lyrics are not to be shown automatically, or no
// player runs; one that falls silent within the tick does not run. An error of showing the lyrics
// ends the tick, and the next one tries the song again; but over a modal window the song's lyrics
// are left out.
void tmr_Playing_Timer();

// submnuShowLyricsCurrentSong: shows the lyrics of the current song, or says why not.
void submnuShowLyricsCurrentSong_Click();

// The tick of tmrRefreshList: has the player write its list anew. Errors: none.
void tmrRefreshList_Timer();

// Puts the module's state back as at the start of the program.
void ResetNowPlaying();

} // namespace player
