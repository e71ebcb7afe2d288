// The real player stopped, killed or started anew between any two steps of the program.
#include "tests/player/audaciousfixture.h"

#include <functional>

namespace
{

using namespace player;
using std::chrono::steady_clock;
using tests::WaitRealTime;

class AudaciousRestart : public tests::Audacious
{
protected:
    AudaciousRestart()
    {
        platform::TheMachine().player = &limited; // no call waits longer than the program lets it
    }

    struct Step {
        const char *name;
        std::function<void()> run;
        std::int64_t limitMs = 1000;
    };

    // The calls to the player when a song is played, followed and edited.
    std::vector<Step> Steps()
    {
        return {
            {"look", [] { IsWinampRunning(); }},
            {"is it in the list", [this] { IsInPlaylist(paths[0]); }},
            {"where", [this] { GetPlaylistIndexOf(paths[0]); }},
            {"length", [] { GetPlaylistLength(); }},
            // A player that does not answer gets five seconds for the entry.
            {"enqueue", [this] { EnqueueFile(added); }, 6000},
            {"select", [] { SetPlaylistPosition(0); }},
            {"play", [] { PlayTrack(); }},
            {"current song", [] { GetCurrentSongPath(); }},
            {"seek", [] { JumpToTime(5, 0); }},
            {"position", [] { GetPlayingPosition(); }},
            {"length of the song", [] { GetPlayingLength(); }},
            {"write", [] { WritePlaylistFile(); }},
            {"release", [this] { ReleasePlayingFile(paths[0], state, position); }},
            {"restore", [this] { RestorePlayingFile(paths[0], paths[0], state, position); }, 6000},
            {"stop", [] { StopTrack(); }},
            {"shuffle", [] { ToggleShuffle(); }},
            {"shuffle back", [] { ToggleShuffle(); }},
        };
    }

    // Runs all steps; `disturb` is called before the step number `disturbed`.
    void RunSteps(std::size_t disturbed, const std::function<void()> &disturb)
    {
        std::size_t number = 0;
        for (const Step &step : Steps()) {
            if (number++ == disturbed)
                disturb();
            const auto start = steady_clock::now();
            try {
                step.run();
            } catch (const runtime::RuntimeError &error) {
                // A song that cannot be added is named; nothing else fails.
                EXPECT_EQ(error.number, runtime::kFileNotFound) << step.name;
                EXPECT_NE(error.description.find(".mp3"), std::string::npos) << error.description;
            }
            EXPECT_LT(tests::MsSince(start), step.limitMs) << step.name;
        }
    }

    void StartWithSongs()
    {
        paths.clear();
        StartWith(2);
        added = real.Song("added.mp3");
    }

    void ExpectItPlays()
    {
        ASSERT_TRUE(WaitRealTime(IsWinampRunning));
        // Each call waits 100 ms at most: on a busy machine one may fail.
        ASSERT_TRUE(WaitRealTime([this] {
            IsWinampRunning();
            SetPlaylistPosition(1);
            PlayTrack();
            return GetCurrentSongPath() == paths[1] && GetPlayingState() == 1;
        }));
    }

    platform::player::AudaciousPlayer limited;
    std::string added;
    std::int32_t state = 0, position = 0;
};

TEST_F(AudaciousRestart, Killed)
{
    for (std::size_t i = 0; i < Steps().size(); ++i) {
        SCOPED_TRACE(Steps()[i].name);
        StartWithSongs();
        RunSteps(i, [this] { real.Kill(); });
        EXPECT_FALSE(IsWinampRunning());
    }
    StartWithSongs();
    ExpectItPlays();
}

TEST_F(AudaciousRestart, KilledAndStartedAnew)
{
    for (std::size_t i = 0; i < Steps().size(); ++i) {
        SCOPED_TRACE(Steps()[i].name);
        StartWithSongs();
        RunSteps(i, [this] {
            real.Kill();
            real.Start();
            real.Add(paths);
        });
        ExpectItPlays();
        real.Kill();
    }
}

TEST_F(AudaciousRestart, StoppedAndContinued)
{
    StartWithSongs();
    for (std::size_t i = 0; i < Steps().size(); ++i) {
        SCOPED_TRACE(Steps()[i].name);
        real.Signal(SIGCONT);
        ExpectItPlays();
        RunSteps(i, [this] { real.Signal(SIGSTOP); });
        GetPlayingState(); // orders alone wait for no answer
        EXPECT_FALSE(IsWinampRunning());
        real.Signal(SIGCONT);
        ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    }
    ExpectItPlays();
}

// Ended in order while a song plays, the player comes back paused in that song, with its old list.
TEST_F(AudaciousRestart, ComesBackPausedWithItsOldList)
{
    StartWith(3);
    Play(1);
    JumpToTime(30, 0);
    ASSERT_TRUE(WaitRealTime([this] { return real.Time() > 30'000; }));
    for (const std::size_t wanted : {std::size_t{2}, std::size_t{1}}) {
        SCOPED_TRACE(wanted);
        real.Order("Quit");
        // It is still writing its list.
        ASSERT_TRUE(WaitRealTime([] { return !IsWinampRunning(); }));
        limited.StartProgram(GetWinampExePath(), 2);
        ASSERT_TRUE(WaitRealTime(IsWinampRunning));
        SetPlaylistPosition(PlaceInPlaylist(paths[wanted]));
        PlayTrack();
        ASSERT_TRUE(WaitRealTime([this] { return real.Status() == "playing" && real.Time() > 0; }));
        EXPECT_LT(real.Time(), 20'000U); // from its beginning
        const std::uint32_t at = real.Time();
        EXPECT_TRUE(WaitRealTime([&] { return real.Time() > at + 300; })); // and it plays
        EXPECT_EQ(real.Status(), "playing");
        EXPECT_EQ(GetPlaylistLength(), 3);
        EXPECT_EQ(GetCurrentSongPath(), paths[wanted]);
        JumpToTime(30, 0);
        ASSERT_TRUE(WaitRealTime([this] { return real.Time() > 30'000; }));
    }
}

} // namespace
