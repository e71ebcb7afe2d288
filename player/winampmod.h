// player/winampmod.h - all that is said to the player: one small operation a message, the player's
// place on disk, and the playlist file that it writes on request. Speaks through platform::Player;
// where no such port is set, no player runs. Paths are the file system's bytes.
#pragma once

#include "platform/player.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace player
{

// The player's window: what IsWinampRunning, which alone writes it, found at its last look; 0 when
// that found none. Each message goes to whatever stands here.
extern platform::WindowHandle WinampWindow;

// Looks for the player's window. False when it is closed or does not answer.
bool IsWinampRunning();

// --- The messages. All answer 0 for a window that is 0 or gone.
std::int32_t GetPlayingState();  // 0 stopped, 1 playing, 3 paused: the lowest bit is "a song is on"
double GetPlayingPosition();     // ms
std::int32_t GetPlayingLength(); // whole seconds; 0 when it is not known
// Seeks to seconds * 1000 + milliseconds. Returns the player's answer. Errors: kOverflow.
std::int32_t JumpToTime(std::int32_t seconds, std::int32_t milliseconds);
// Has the player write WINAMP.m3u into its folder. -1 = failed.
std::int32_t WritePlaylistFile();
// Selects an entry by its zero-based index; -1 is none, and what is selected stays.
std::int32_t SetPlaylistPosition(std::int16_t index);
std::int32_t GetPlaylistLength();
std::int32_t GetPlaylistPosition(); // zero-based; -1 = none
// Appends a song to the player's list. Errors: kFileNotFound, the path in its words, when the
// player takes no such file.
std::int32_t EnqueueFile(const std::string &path);
std::int32_t PreviousTrack();
std::int32_t PlayTrack();
std::int32_t PauseTrack(); // and on again, when it is paused
std::int32_t StopTrack();
std::int32_t NextTrack();

// Types the letter "s" into the player's window. Returns: as TypeKeysToWindow.
int ToggleShuffle();

// Brings the window forward, types the text there, and puts the window back that was in front.
// Gives up when 20 attempts for one character did not bring it forward. Lets events run meanwhile.
// Returns: 1; 0 for an empty text and when it gave up.
int TypeKeysToWindow(std::string_view text, platform::WindowHandle window);

// --- The player on disk. Each text is empty when the player is not registered.

// The text value `valueName` (empty: the key's own) of `subkey`. Empty for a value that is missing,
// of another type, or longer than 255 bytes. The key stays open, unless `root` is 0.
std::string ReadRegistryString(std::uint32_t root, std::string_view subkey,
                               std::string_view valueName);

// The program out of the command `"path" "%1"` under which the player is registered; any other
// shape gives a wrong path, one below 8 characters the empty text.
std::string GetWinampExePath();

// The player's folder with its closing separator.
std::string GetWinampFolder();

// --- The player's list.

// The playlist text without its head (9 characters) and its "#EXTINF" lines: one path a line, each
// closed by CR LF.
std::string StripExtInfLines(std::string_view text);

// The path of the selected entry; empty when there is none or no player. The text of the file is
// kept from call to call: where it cannot be read for a moment the last one counts.
std::string GetCurrentSongPath();

// The zero-based place of the path in the list, without regard to letter case. -1 when it is not
// there, or beyond what 16 bits hold.
std::int16_t GetPlaylistIndexOf(const std::string &path);

// Whether the path occurs anywhere in the list's text, be it as a part of a longer one, without
// regard to letter case.
bool IsInPlaylist(const std::string &path);

// Whether there is such a file that can be opened for reading.
bool FileCanBeOpened(const std::string &path);

// Puts the module's state back as at the start of the program.
void ResetWinAmpMod();

} // namespace player
