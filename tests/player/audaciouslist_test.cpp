// The list of a real player as the port learns it: long ones, two at a time, changed by others.
#include "runtime/text.h"
#include "tests/player/audaciousfixture.h"

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

using namespace player;
using std::chrono::steady_clock;
using tests::WaitRealTime;

// Counts the questions for names of the list, by anybody on the bus.
class NameQuestions
{
public:
    NameQuestions()
    {
        EXPECT_GE(sd_bus_new(&m_bus), 0);
        EXPECT_GE(sd_bus_set_address(m_bus, getenv("DBUS_SESSION_BUS_ADDRESS")), 0);
        EXPECT_GE(sd_bus_set_bus_client(m_bus, 1), 0);
        EXPECT_GE(sd_bus_set_monitor(m_bus, 1), 0);
        EXPECT_GE(sd_bus_start(m_bus), 0);
        EXPECT_GE(sd_bus_call_method(m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                     "org.freedesktop.DBus.Monitoring", "BecomeMonitor", nullptr,
                                     nullptr, "asu", 1, "type='method_call',member='SongFilename'",
                                     0U),
                  0);
    }
    ~NameQuestions() { sd_bus_close_unref(m_bus); }
    NameQuestions(const NameQuestions &) = delete;
    NameQuestions &operator=(const NameQuestions &) = delete;

    // The number of questions so far.
    int Count()
    {
        sd_bus_message *message = nullptr;
        while (sd_bus_process(m_bus, &message) > 0) {
            m_count += sd_bus_message_is_method_call(message, nullptr, "SongFilename") > 0 ? 1 : 0;
            message = sd_bus_message_unref(message);
        }
        return m_count;
    }

private:
    sd_bus *m_bus = nullptr;
    int m_count = 0;
};

class AudaciousLongList : public tests::Audacious
{
protected:
    // How many entries have a name in the playlist file: those that the port knows have one.
    static std::size_t NamesInPlaylist()
    {
        const std::vector<std::string> lines = runtime::Split(Playlist(), "\r\n");
        return static_cast<std::size_t>(std::count_if(
            lines.begin(), lines.end(), [](const auto &line) { return line.ends_with(".mp3"); }));
    }

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
    NameQuestions questions;
    StartWithMany(2'000);
    EXPECT_EQ(GetPlayingState(), 0);
    ASSERT_TRUE(WaitRealTime([&] {
        IsWinampRunning();
        return questions.Count() >= 2'000;
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
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    EXPECT_EQ(NamesInPlaylist(), 1'000U);
    const std::string song = real.Song("new.mp3");
    EnqueueFile(song);
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    port.LearnPlaylist(); // reads the name of the new entry only
    EXPECT_EQ(GetPlaylistIndexOf(song), 1'000);
    real.Order("Delete", 0); // another length: all of them
    ASSERT_TRUE(WaitRealTime([] { return GetPlaylistLength() == 1'000; }));
    EXPECT_EQ(GetCurrentSongPath(), paths[500]);
    EXPECT_LT(NamesInPlaylist(), 1'000U) << "all are asked for again";
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
