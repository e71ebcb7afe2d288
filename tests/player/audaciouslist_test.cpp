// The list of a real player as the port learns it: long ones, two at a time, changed by others.
#include "tests/player/audaciousfixture.h"

#include <unistd.h>

#include <algorithm>

namespace
{

using namespace player;
using std::chrono::steady_clock;
using tests::WaitRealTime;

class AudaciousLongList : public tests::Audacious
{
protected:
    // The player runs with `count` entries, all the same song by other names.
    void StartWithMany(int count)
    {
        real.Start();
        const std::string song = real.Song("song.mp3", 20);
        for (int i = 0; i < count; ++i) {
            paths.push_back(real.music /
                            ("a long enough name for a song " + std::to_string(i) + ".mp3"));
            ASSERT_EQ(symlink(song.c_str(), paths.back().c_str()), 0);
        }
        real.Add(paths);
        ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    }
};

TEST_F(AudaciousLongList, TenThousandEntries)
{
    StartWithMany(10'000);
    const auto start = steady_clock::now();
    port.LearnPlaylist();
    EXPECT_LT(tests::MsSince(start), 30'000);
    EXPECT_EQ(GetPlaylistIndexOf(paths[9'999]), 9'999);
    EXPECT_EQ(GetPlaylistIndexOf(paths[5'000]), 5'000);
    Play(7'777);
    EXPECT_EQ(GetCurrentSongPath(), paths[7'777]);
}

TEST_F(AudaciousLongList, AtMost256QuestionsAreInFlight)
{
    StartWithMany(3'000);
    platform::player::AudaciousBus bus(5000);
    platform::player::AudaciousList list(bus);
    ASSERT_TRUE(WaitRealTime([&] {
        bus.Update();
        return bus.IsAnswering();
    }));
    ASSERT_TRUE(list.Check(-1));
    std::size_t most = 0;
    ASSERT_TRUE(WaitRealTime([&] {
        list.Continue();
        most = std::max(most, bus.Pending());
        bus.Update();
        return list.IsComplete();
    }));
    EXPECT_EQ(most, 256U);
    EXPECT_EQ(bus.Pending(), 0U);
    for (int i = 0; i < 3'000; ++i)
        ASSERT_EQ(list.Known(i), paths[static_cast<std::size_t>(i)]);
}

// The questions of the monitor are enough for the port to read the list; no call waits for it.
TEST_F(AudaciousLongList, TheListIsLearntWhileNothingPlays)
{
    StartWithMany(2'000);
    EXPECT_EQ(GetPlayingState(), 0);
    ASSERT_TRUE(WaitRealTime([this] {
        IsWinampRunning();
        return port.KnowsPlaylist();
    }));
    const auto start = steady_clock::now();
    port.LearnPlaylist();
    EXPECT_LT(tests::MsSince(start), 1000); // two single questions
    EXPECT_EQ(GetPlaylistIndexOf(paths[1'999]), 1'999);
}

// Once the list is known, only the length, the position and one name are asked for.
TEST_F(AudaciousLongList, AKnownListIsNotReadAgain)
{
    StartWithMany(1'000);
    port.LearnPlaylist();
    Play(500);
    ASSERT_TRUE(port.KnowsPlaylist());
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    EXPECT_TRUE(port.KnowsPlaylist());
    const std::string song = real.Song("new.mp3");
    EnqueueFile(song);
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    port.LearnPlaylist(); // reads the name of the new entry only
    EXPECT_EQ(GetPlaylistIndexOf(song), 1'000);
    real.Order("Delete", 0); // another length: all of them
    ASSERT_TRUE(WaitRealTime([] { return GetPlaylistLength() == 1'000; }));
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    EXPECT_FALSE(port.KnowsPlaylist());
    port.LearnPlaylist();
    EXPECT_EQ(GetPlaylistIndexOf(paths[1]), 0);
}

// Two lists of the same length are distinguished by the one name that is asked for.
TEST_F(AudaciousLongList, TwoListsOfTheSameLength)
{
    StartWith(3);
    std::vector<std::string> others;
    for (int i = 0; i < 3; ++i)
        others.push_back(real.Song("other " + std::to_string(i) + ".mp3"));
    real.Order("NewPlaylist"); // shown now
    ASSERT_TRUE(WaitRealTime([this] { return real.Lists() == 2; }));
    real.Order("SelectDisplayedPlaylist");
    real.Add(others);
    real.Order("SetActivePlaylist", 0);
    ASSERT_TRUE(WaitRealTime([this] {
        real.Order("SelectDisplayedPlaylist");
        return real.Filename(0) == platform::player::UriOfPath(paths[0]);
    }));
    Play(0);
    port.LearnPlaylist();
    EXPECT_EQ(GetPlaylistIndexOf(paths[2]), 2);
    real.Order("SelectDisplayedPlaylist"); // else the next order would stop the player
    real.Order("SetActivePlaylist", 1);
    ASSERT_TRUE(WaitRealTime([this, &others] {
        real.Order("SelectDisplayedPlaylist");
        return real.Filename(0) == platform::player::UriOfPath(others[0]);
    }));
    EXPECT_EQ(GetCurrentSongPath(), paths[0]); // the one that plays counts
    EXPECT_TRUE(IsInPlaylist(paths[2]));
    EXPECT_FALSE(IsInPlaylist(others[2]));
    StopTrack(); // stopped: the one that shows
    ASSERT_TRUE(WaitForState(0));
    port.LearnPlaylist();
    EXPECT_FALSE(IsInPlaylist(paths[2]));
    EXPECT_EQ(GetPlaylistIndexOf(others[2]), 2);
    Play(2);
    EXPECT_EQ(GetCurrentSongPath(), others[2]);
    EXPECT_EQ(GetPlaylistLength(), 3);
}

} // namespace
