// The port of the player Audacious, on the real player.
#include "tests/player/audaciousfixture.h"
#include "tests/support/programpath.h"

#include <sys/stat.h>

#include <filesystem>

namespace
{

using namespace player;
using std::chrono::steady_clock;
using tests::Audacious;
using tests::MsSince;
using tests::WaitRealTime;

TEST_F(Audacious, NoPlayerRuns)
{
    EXPECT_FALSE(IsWinampRunning());
    EXPECT_EQ(GetPlayingState(), 0);
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(WritePlaylistFile(), 0); // of no window
    real.Start();
    EXPECT_TRUE(WaitRealTime(IsWinampRunning));
    const platform::WindowHandle first = WinampWindow;
    real.Kill();
    EXPECT_TRUE(WaitRealTime([] { return !IsWinampRunning(); }));
    real.Start();
    EXPECT_TRUE(WaitRealTime(IsWinampRunning));
    EXPECT_NE(WinampWindow, first); // nobody answers a message to the old one
    EXPECT_EQ(port.SendMessage(first, platform::kWmUser, 0, platform::kAskSelected), 0);
}

TEST_F(Audacious, TheFirstLookFindsAPlayerThatIsThere)
{
    StartWith(0);
    platform::player::AudaciousPlayer fresh(5000);
    EXPECT_NE(fresh.FindWindow("Winamp v1.x"), 0U);
    EXPECT_EQ(fresh.FindWindow("Other"), 0U);
}

TEST_F(Audacious, AnEmptyList)
{
    StartWith(0);
    EXPECT_EQ(GetPlaylistLength(), 0);
    EXPECT_EQ(GetPlaylistPosition(), -1);
    EXPECT_EQ(GetPlayingLength(), 0);
    EXPECT_EQ(GetPlayingPosition(), 0);
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(WritePlaylistFile(), 0);
    EXPECT_EQ(Playlist(), "#EXTM3U\r\n");
    PlayTrack();
    EXPECT_EQ(GetPlayingState(), 0);
}

TEST_F(Audacious, StatesAndTimes)
{
    StartWith(2);
    EXPECT_EQ(GetPlayingState(), 0);
    EXPECT_EQ(GetPlayingLength(), 0); // of a stopped player
    Play(1);
    EXPECT_EQ(GetPlaylistPosition(), 1);
    EXPECT_TRUE(WaitRealTime([] { return GetPlayingLength() == 100; }));
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
    PauseTrack();
    EXPECT_TRUE(WaitForState(3));
    EXPECT_EQ(GetPlayingLength(), 100);
    PauseTrack();
    EXPECT_TRUE(WaitForState(1));
    PreviousTrack();
    EXPECT_TRUE(WaitRealTime([] { return GetPlaylistPosition() == 0; }));
    NextTrack();
    EXPECT_TRUE(WaitRealTime([] { return GetPlaylistPosition() == 1; }));
    StopTrack();
    EXPECT_TRUE(WaitForState(0));
    EXPECT_EQ(GetPlayingPosition(), 0);
    EXPECT_EQ(GetPlayingLength(), 0);
}

TEST_F(Audacious, Seeking)
{
    StartWith(1);
    EXPECT_EQ(JumpToTime(40, 0), -1); // of a stopped player
    EXPECT_EQ(GetPlayingPosition(), 0);
    for (int round = 0; round < 5; ++round) {
        StopTrack();
        SetPlaylistPosition(0);
        PlayTrack();
        EXPECT_EQ(JumpToTime(40, 250), 0);
        for (int i = 0; i < 50; ++i) {
            const double ms = GetPlayingPosition();
            ASSERT_GE(ms, 40'250) << "the player has not caught up yet";
            ASSERT_LT(ms, 45'000);
        }
        EXPECT_TRUE(WaitRealTime([this] { return real.Time() > 40'250; }));
        JumpToTime(10, 0); // and back
        const double ms = GetPlayingPosition();
        EXPECT_GE(ms, 10'000);
        EXPECT_LT(ms, 12'000);
    }
    PauseTrack();
    ASSERT_TRUE(WaitForState(3));
    JumpToTime(70, 0);
    EXPECT_TRUE(WaitRealTime([this] { return real.Time() >= 69'000; }));
    EXPECT_EQ(GetPlayingState(), 3);
    EXPECT_GE(GetPlayingPosition(), 69'000);
}

// A tick of the monitor gets all answers from one query of the player, until it sends an order.
TEST_F(Audacious, OneLookAnswersAllQuestions)
{
    StartWith(2);
    Play(1);
    ASSERT_TRUE(WaitRealTime([] { return GetPlayingLength() == 100; }));
    EXPECT_EQ(GetPlayingState(), 1);
    EXPECT_EQ(GetPlaylistPosition(), 1);
    {
        const QuestionBatch look;
        EXPECT_EQ(GetPlayingState(), 1); // all of it is asked here
        real.Order("Stop");
        ASSERT_TRUE(WaitRealTime([this] { return real.Status() == "stopped"; }));
        {
            const QuestionBatch inner;
            EXPECT_EQ(GetPlayingState(), 1);
        }
        EXPECT_EQ(GetPlaylistLength(), 2);
        EXPECT_EQ(GetPlayingLength(), 100);
        EXPECT_GT(GetPlayingPosition(), 0);
        EXPECT_EQ(GetCurrentSongPath(), paths[1]);
        PreviousTrack();
        EXPECT_TRUE(WaitRealTime([] { return GetPlaylistPosition() == 0; }));
        EXPECT_EQ(GetPlayingState(), 0);
    }
    EXPECT_EQ(GetPlayingState(), 0);
    EXPECT_EQ(GetCurrentSongPath(), paths[0]);
    real.Kill();
    EXPECT_FALSE(IsPlayerSilent()); // it is not there at all
    const QuestionBatch look;
    EXPECT_FALSE(IsWinampRunning());
    EXPECT_EQ(GetPlayingState(), 0);
}

// What was asked and not answered is not waited for again.
TEST_F(Audacious, APlayerThatIsStoppedWithinALook)
{
    StartWith(2);
    Play(1);
    platform::player::AudaciousPlayer limited; // to the program's own limit
    platform::TheMachine().player = &limited;
    ASSERT_TRUE(WaitForState(1));
    {
        const QuestionBatch look;
        real.Signal(SIGSTOP);
        ASSERT_TRUE(IsWinampRunning());
        const auto start = steady_clock::now();
        EXPECT_EQ(GetPlayingState(), 0);
        EXPECT_EQ(GetPlaylistPosition(), -1);
        EXPECT_EQ(GetPlayingPosition(), 0);
        EXPECT_FALSE(IsWinampRunning());
        EXPECT_LT(MsSince(start), 1000); // one call, up to its limit; the others do not wait
    }
    real.Signal(SIGCONT);
    EXPECT_TRUE(WaitRealTime(IsWinampRunning));
    EXPECT_TRUE(WaitForState(1));
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
}

TEST_F(Audacious, AnIndexThatDoesNotExistStopsNothing)
{
    StartWith(3);
    Play(1);
    for (const std::int16_t index : {std::int16_t{-1}, std::int16_t{3}, std::int16_t{32767}}) {
        SetPlaylistPosition(index); // nothing was enqueued
        EXPECT_EQ(GetPlaylistPosition(), 1) << index;
        EXPECT_EQ(GetPlayingState(), 1) << index;
    }
}

TEST_F(Audacious, OnePastTheEndIsTheEntryEnqueuedLast)
{
    StartWith(2);
    const std::string song = real.Song("new.mp3");
    EnqueueFile(song);
    EXPECT_EQ(GetPlaylistLength(), 3); // it is there when the call returns
    SetPlaylistPosition(3);
    EXPECT_EQ(GetPlaylistPosition(), 2);
    real.Order("Delete", 0); // another program changes the list: the song is found at its new index
    ASSERT_TRUE(WaitRealTime([] { return GetPlaylistLength() == 2; }));
    port.LearnPlaylist();
    SetPlaylistPosition(0);
    EXPECT_TRUE(WaitRealTime([] { return GetPlaylistPosition() == 0; }));
    SetPlaylistPosition(2);
    EXPECT_EQ(GetPlaylistPosition(), 1);
}

TEST_F(Audacious, NamesOfAllKinds)
{
    StartWith(0);
    const std::string names[] = {"a b.mp3",         "\xC3\xA9#%?&;+.mp3", "latin \xE9.mp3",
                                 "(1) [x] 'y'.mp3", "back\\slash.mp3",    "cue.mp3?2.mp3"};
    for (const std::string &name : names) {
        SCOPED_TRACE(name);
        const std::string song = real.Song(name);
        EnqueueFile(song);
        Play(static_cast<std::int16_t>(GetPlaylistLength()));
        EXPECT_EQ(GetCurrentSongPath(), song);
        EXPECT_TRUE(IsInPlaylist(song));
        EXPECT_EQ(GetPlaylistIndexOf(song), GetPlaylistLength() - 1);
    }
}

TEST_F(Audacious, APathThatIsNoLineIsWrittenAsItsAddress)
{
    StartWith(0);
    const std::string breaks = real.Song("two\r\nlines.mp3"), mark = real.Song("#EXTINF.mp3"),
                      last = real.Song("z.mp3");
    for (const std::string &song : {breaks, mark, last})
        EnqueueFile(song);
    port.LearnPlaylist();
    EXPECT_EQ(GetPlaylistIndexOf(last), 2);
    EXPECT_EQ(Playlist(), "#EXTM3U\r\n" + platform::player::UriOfPath(breaks) + "\r\n" +
                              platform::player::UriOfPath(mark) + "\r\n" + last + "\r\n");
}

TEST_F(Audacious, WhatCannotBeAddedIsNamed)
{
    StartWith(1);
    for (const std::string &path : {real.music / "none.mp3", real.music.Path()}) {
        try {
            EnqueueFile(path);
            ADD_FAILURE() << path;
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, runtime::kFileNotFound);
            EXPECT_NE(error.description.find(path), std::string::npos);
        }
    }
    EXPECT_EQ(GetPlaylistLength(), 1);
}

TEST_F(Audacious, ASongThatDoesNotComeIsNamedInTime)
{
    StartWith(1);
    const std::string song = real.Song("new.mp3");
    platform::player::AudaciousPlayer limited; // to the program's own limit
    platform::TheMachine().player = &limited;
    ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    real.Signal(SIGSTOP);
    const auto start = steady_clock::now();
    EXPECT_THROW(EnqueueFile(song), runtime::RuntimeError);
    EXPECT_GE(MsSince(start), 4900);
    EXPECT_LT(MsSince(start), 6000);
}

TEST_F(Audacious, CancellingEndsTheWaitForAnEntry)
{
    StartWith(1);
    const std::string song = real.Song("new.mp3");
    platform::player::AudaciousPlayer limited; // to the program's own limit
    platform::TheMachine().player = &limited;
    ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    real.Signal(SIGSTOP);
    desktop.doEvents = [] { platform::CancelWaits(); };
    const auto start = steady_clock::now();
    EXPECT_EQ(EnqueueFile(song), 0);
    EXPECT_LT(MsSince(start), 1000);
}

TEST_F(Audacious, TheListThatPlaysCountsNotTheOneThatShows)
{
    StartWith(3);
    Play(2);
    port.LearnPlaylist();
    real.Order("NewPlaylist"); // shown now, and empty
    ASSERT_TRUE(WaitRealTime([this] { return real.Lists() == 2; }));
    real.Order("SetActivePlaylist", 0);
    ASSERT_TRUE(WaitRealTime([] { return GetPlaylistLength() == 3; }));
    Play(2);
    real.Order("SelectDisplayedPlaylist"); // else the next order would stop the player
    real.Order("SetActivePlaylist", 1);
    real.Order("SelectDisplayedPlaylist");
    ASSERT_EQ(real.Length(), 0);
    EXPECT_EQ(GetPlaylistLength(), 3);
    EXPECT_EQ(GetPlaylistPosition(), 2);
    real.Order("SelectDisplayedPlaylist");
    EXPECT_EQ(GetCurrentSongPath(), paths[2]);
    real.Order("SelectDisplayedPlaylist");
    EXPECT_EQ(GetPlayingLength(), 100);
    real.Order("SelectDisplayedPlaylist");
    SetPlaylistPosition(1);
    PlayTrack();
    EXPECT_TRUE(WaitRealTime([this] { return GetCurrentSongPath() == paths[1]; }));
    StopTrack(); // when stopped, the list that is shown counts
    ASSERT_TRUE(WaitForState(0));
    EXPECT_EQ(GetPlaylistLength(), 0);
    const std::string song = real.Song("new.mp3");
    EnqueueFile(song);
    Play(1);
    EXPECT_EQ(GetCurrentSongPath(), song);
    EXPECT_EQ(GetPlaylistLength(), 1);
}

TEST_F(Audacious, ThePlaylistFile)
{
    StartWith(2);
    port.LearnPlaylist();
    EXPECT_EQ(WritePlaylistFile(), 0);
    const std::string file = GetWinampFolder() + "WINAMP.m3u";
    EXPECT_EQ(tests::ReadFile(file), "#EXTM3U\r\n" + paths[0] + "\r\n" + paths[1] + "\r\n");
    struct stat first {
    }, second{};
    stat(file.c_str(), &first);
    EXPECT_EQ(first.st_mode & 0777, 0600U);
    WritePlaylistFile();
    stat(file.c_str(), &second);
    EXPECT_EQ(first.st_ino, second.st_ino) << "the same list was written again";
    std::filesystem::remove(file);
    EXPECT_EQ(WritePlaylistFile(), 0);
    EXPECT_TRUE(std::filesystem::exists(file));
    tests::WriteFile(file, "others");
    EXPECT_EQ(WritePlaylistFile(), 0);
    EXPECT_EQ(tests::ReadFile(file), "#EXTM3U\r\n" + paths[0] + "\r\n" + paths[1] + "\r\n");
    EXPECT_EQ(GetWinampExePath(), GetWinampFolder() + "audacious");
}

TEST_F(Audacious, OthersChangeTheList)
{
    StartWith(4);
    port.LearnPlaylist();
    EXPECT_EQ(GetPlaylistIndexOf(paths[3]), 3);
    Play(3);
    real.Order("Delete", 0);
    EXPECT_TRUE(WaitRealTime([this] { return GetCurrentSongPath() == paths[3]; }));
    EXPECT_EQ(GetPlaylistPosition(), 2);
    port.LearnPlaylist();
    EXPECT_EQ(GetPlaylistIndexOf(paths[0]), -1);
    EXPECT_EQ(GetPlaylistIndexOf(paths[1]), 0);
    // A list of the same length, in which another song is at the index that is about to be played.
    const std::int16_t index = GetPlaylistIndexOf(paths[2]);
    real.Order("Delete", 1);
    real.Add({paths[0]});
    SetPlaylistPosition(index);
    EXPECT_TRUE(WaitRealTime([this] { return GetCurrentSongPath() == paths[2]; }));
}

TEST_F(Audacious, Shuffle)
{
    StartWith(1);
    const bool before = real.Shuffles();
    EXPECT_EQ(ToggleShuffle(), 1);
    EXPECT_TRUE(WaitRealTime([&] { return real.Shuffles() != before; }));
    EXPECT_EQ(ToggleShuffle(), 1);
    EXPECT_TRUE(WaitRealTime([&] { return real.Shuffles() == before; }));
}

TEST_F(Audacious, APlayerThatIsStoppedBySignal)
{
    StartWith(2);
    Play(0);
    platform::player::AudaciousPlayer limited; // to the program's own limit
    platform::TheMachine().player = &limited;
    ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    EXPECT_FALSE(IsPlayerSilent());
    real.Signal(SIGSTOP);
    std::int64_t longest = 0;
    for (int i = 0; i < 40; ++i) {
        const auto start = steady_clock::now();
        const bool running = IsWinampRunning();
        if (running)
            GetCurrentSongPath();
        GetPlayingState();
        longest = std::max(longest, MsSince(start));
        EXPECT_EQ(running, i == 0) << i; // it is on the bus until the first question has no answer
    }
    EXPECT_LT(longest, 1000); // one call, up to its limit; the others do not wait
    EXPECT_TRUE(IsPlayerSilent());
    const auto start = steady_clock::now();
    EXPECT_FALSE(IsWinampRunning());
    limited.StartProgram("x", 2); // its name is owned: nothing is started
    EXPECT_LT(MsSince(start), 100);
    real.Signal(SIGCONT);
    EXPECT_TRUE(WaitRealTime(IsWinampRunning));
    EXPECT_TRUE(WaitForState(1));
    EXPECT_EQ(GetCurrentSongPath(), paths[0]);
}

TEST_F(Audacious, Starting)
{
    ASSERT_FALSE(IsWinampRunning());
    const auto start = steady_clock::now();
    port.StartProgram(GetWinampExePath(), 2);
    EXPECT_LT(MsSince(start), 500); // it does not wait for the player
    EXPECT_TRUE(WaitRealTime(IsWinampRunning));
    real.Kill();
}

TEST_F(Audacious, NotInstalled)
{
    const tests::PathOfPrograms path(real.music.Path());
    EXPECT_EQ(GetWinampExePath(), "");
    EXPECT_EQ(GetWinampFolder(), "");
    try {
        port.StartProgram(GetWinampExePath(), 2);
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_NE(error.description.find("apt install audacious"), std::string::npos);
    }
}

TEST_F(Audacious, ThePrivateFolderGoesWithThePort)
{
    std::string folder;
    {
        platform::player::AudaciousPlayer other;
        platform::TheMachine().player = &other;
        folder = GetWinampFolder();
        EXPECT_TRUE(std::filesystem::is_directory(folder));
        tests::WriteFile(folder + "WINAMP.m3u", "x");
    }
    platform::TheMachine().player = &port;
    EXPECT_FALSE(std::filesystem::exists(folder));
}

} // namespace
