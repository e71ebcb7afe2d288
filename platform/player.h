// platform/player.h - what the program asks of the player that plays the songs: another program,
// which may be closed at any time. Paths are the file system's bytes.
#pragma once

#include <cstdint>
#include <string>

namespace platform
{

struct Player {
    virtual ~Player() = default;

    // Whether the player runs now. The others are asked only after a true answer.
    virtual bool IsRunning() = 0;

    // 0 stopped, 1 playing, 3 paused.
    virtual std::int32_t PlayingState() = 0;

    // The song that is selected in the player's list; empty when there is none.
    virtual std::string CurrentSongPath() = 0;

    // Milliseconds into the song.
    virtual double PlayingPosition() = 0;

    // Whether the path, without regard to letter case, occurs in the text of the player's list, be
    // it as the beginning of a longer one.
    virtual bool IsInPlaylist(const std::string &path) = 0;

    // The zero-based place of exactly this path, without regard to letter case; -1 without one.
    virtual std::int16_t PlaylistIndexOf(const std::string &path) = 0;

    virtual std::int16_t PlaylistLength() = 0;
    virtual void EnqueueFile(const std::string &path) = 0; // at the end of the list
    virtual void SetPlaylistPosition(std::int16_t index) = 0;
    virtual void PlayTrack() = 0;
    virtual void PauseTrack() = 0;
    virtual void StopTrack() = 0;
    virtual void JumpToTime(std::int32_t seconds, std::int32_t milliseconds) = 0;
};

} // namespace platform
