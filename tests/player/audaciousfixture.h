// tests/player/audaciousfixture.h - the port of the player Audacious on the real player, over a
// D-Bus session and a sound server of the tests' own (tests/windows/run_windowed --player).
#pragma once

#include "platform/machine.h"
#include "platform/player/audacious.h"
#include "platform/posix/systemclock.h"
#include "platform/waiting.h"
#include "player/playing.h"
#include "player/winampmod.h"
#include "tests/support/realplayer.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

namespace tests
{

inline std::int64_t MsSince(std::chrono::steady_clock::time_point start)
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now() - start).count();
}

class Audacious : public testing::Test
{
protected:
    Audacious()
    {
        platform::TheMachine().clock = &m_clock;
        platform::TheMachine().player = &port;
        player::ResetWinAmpMod();
    }
    ~Audacious() override
    {
        platform::TheMachine().clock = nullptr;
        platform::TheMachine().player = nullptr;
        player::ResetWinAmpMod();
    }

    // The player runs with songs 0.mp3, 1.mp3, ... in its list.
    void StartWith(int songs)
    {
        real.Start();
        for (int i = 0; i < songs; ++i)
            paths.push_back(real.Song(std::to_string(i) + ".mp3"));
        if (songs > 0)
            real.Add(paths);
        ASSERT_TRUE(WaitRealTime(player::IsWinampRunning));
    }

    static bool WaitForState(std::int32_t state)
    {
        return WaitRealTime(
            [state] { return player::IsWinampRunning() && player::GetPlayingState() == state; });
    }

    void Play(std::int16_t index)
    {
        player::SetPlaylistPosition(index);
        player::PlayTrack();
        ASSERT_TRUE(WaitForState(1));
        ASSERT_TRUE(WaitRealTime([this] { return real.Time() > 0; }));
    }

    static std::string Playlist() { return ReadFile(player::GetWinampFolder() + "WINAMP.m3u"); }

    platform::posix::SystemClock m_clock;
    ScriptedDesktop desktop;
    RealPlayer real;
    // A machine with much to do makes the player slow; the limit itself is tested by its own test.
    platform::player::AudaciousPlayer port{5000};
    std::vector<std::string> paths;
};

} // namespace tests
