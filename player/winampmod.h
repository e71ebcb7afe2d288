// player/winampmod.h - all communication with the player: one small procedure for each message, the
// player's folder on the disk, and the playlist file that it writes. It uses platform::Player; when
// there is no such port, no player runs. Paths are bytes.
#pragma once

#include "platform/player.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace player
{

// The player's window that IsWinampRunning last found; 0 when it found none. Only that procedure
// sets it. Messages are sent to this window.
extern platform::WindowHandle WinampWindow;

// Searches for the player's window. Returns: false when there is none or it does not answer.
bool IsWinampRunning();

// --- The messages. All return 0 when the window is 0 or does not exist any more. Those without a
// comment return the player's own result, which nobody uses.

// 0 stopped, 1 playing, 3 paused: the lowest bit means that there is a song.
std::int32_t GetPlayingState();
double GetPlayingPosition();     // ms
std::int32_t GetPlayingLength(); // whole seconds; 0 when not known
// Seeks to seconds * 1000 + milliseconds. Returns: the player's result. Errors: kOverflow.
std::int32_t JumpToTime(std::int32_t seconds, std::int32_t milliseconds);
// Makes the player write WINAMP.m3u into its folder. Returns: -1 = failed.
std::int32_t WritePlaylistFile();
// Selects an entry by its zero-based index; -1 changes nothing.
std::int32_t SetPlaylistPosition(std::int16_t index);
std::int32_t GetPlaylistLength();   // the number of entries
std::int32_t GetPlaylistPosition(); // zero-based; -1 = none
// Appends a song to the player's list. Errors: kFileNotFound, with the path, when the player does
// not accept the file.
std::int32_t EnqueueFile(const std::string &path);
std::int32_t PreviousTrack();
std::int32_t PlayTrack();
std::int32_t PauseTrack(); // pauses, or plays on when paused
std::int32_t StopTrack();
std::int32_t NextTrack();

// Types the letter "s" into the player's window. Returns: see TypeKeysToWindow.
int ToggleShuffle();

// Brings the window to the front, types the text there, and brings the former window to the front
// again. Gives up when 20 attempts for one character did not bring it to the front. Lets events
// run.
// Returns: 1; 0 when the text is empty or it gave up.
int TypeKeysToWindow(std::string_view text, platform::WindowHandle window);

// --- The player on disk. Each text is empty when the player is not registered.

// The text value `valueName` (empty: the default value) of `subkey`. Empty when the value is
// missing, has another type, or is longer than 255 bytes. The key stays open, unless `root` is 0.
std::string ReadRegistryString(std::uint32_t root, std::string_view subkey,
                               std::string_view valueName);

// The path of the program in the command `"path" "%1"` with which the player is registered. A
// command of another form gives a wrong path, one of fewer than 8 characters the empty text.
std::string GetWinampExePath();

// The player's folder with a separator at its end.
std::string GetWinampFolder();

// --- The player's list.

// The text of a playlist without its first 9 characters (the head) and its "#EXTINF" lines: one
// path in each line, which ends with CR LF.
std::string StripExtInfLines(std::string_view text);

// The path of the selected entry; empty when there is none or no player. The text of the file is
// cached: when it cannot be read for a moment, the last text is used.
std::string GetCurrentSongPath();

// The zero-based position of the path in the list, letter case ignored. -1 when it is not there, or
// the position does not fit 16 bits.
std::int16_t GetPlaylistIndexOf(const std::string &path);

// Whether the text of the list contains the path, also as a part of a longer one; letter case is
// ignored.
bool IsInPlaylist(const std::string &path);

// Whether the file exists and can be opened for reading.
bool FileCanBeOpened(const std::string &path);

// Whether the player is there, but did not answer the last question in time: what was answered
// since is not known.
bool IsPlayerSilent();

// While one exists, the port may ask the player once and answer all questions from that.
class QuestionBatch
{
public:
    QuestionBatch();
    ~QuestionBatch();
    QuestionBatch(const QuestionBatch &) = delete;
    QuestionBatch &operator=(const QuestionBatch &) = delete;

private:
    platform::Player *m_port; // outlives it; null where there is none
};

// Sets the module's state to that at the start of the program; for tests.
void ResetWinAmpMod();

} // namespace player
