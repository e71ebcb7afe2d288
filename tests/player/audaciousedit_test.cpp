// An edit of a song while the real player plays: with the tag writer and the hooks of the program
// itself.
#include "app/modulehooks.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "tests/player/audaciousfixture.h"
#include "tests/support/freshcatalogue.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace
{

using namespace player;
using tests::WaitRealTime;

class AudaciousEdit : public tests::Audacious
{
protected:
    AudaciousEdit()
    {
        shell::SetAppPath(program.Path());
        shell::TheGlobals() = shell::Globals{};
        shell::TheGlobals().BackUpFiles = false;
        shell::TheGlobals().UpdateDBAfterEditing = false;
        app::ConnectModules();
    }
    ~AudaciousEdit() override
    {
        metadata::TheTagWriterHooks() = {};
        metadata::ResetMP3Info();
        shell::TheGlobals() = shell::Globals{};
        shell::SetAppPath(before);
    }

    // Gives the song another title; so long that the audio begins at another offset in the file.
    static void Edit(const std::string &path, const std::string &title)
    {
        const metadata::SongInfo old = metadata::ReadSongInfo(path);
        metadata::SongInfo song = old;
        song.id3v2.Title = title;
        song.id3v2.Lyrics = std::string(5000, 'x');
        EXPECT_TRUE(metadata::SaveTag(song.id3v1, song.id3v2, old.id3v1, old.id3v2, path, false,
                                      true, nullptr));
        EXPECT_EQ(metadata::LastSaveResult(), metadata::SaveResult::Written);
        EXPECT_EQ(metadata::ReadSongInfo(path).id3v2.Title, title);
    }

    // The song plays on from `seconds`, or is paused there.
    void PlayFrom(std::int16_t index, int seconds)
    {
        Play(index);
        JumpToTime(seconds, 0);
        ASSERT_TRUE(WaitRealTime([&] {
            return real.Time() > static_cast<std::uint32_t>(seconds) * 1000 && real.Time() < 90'000;
        }));
    }

    const std::string before = shell::GetAppPath();
    tests::TestFolder program;
};

TEST_F(AudaciousEdit, TheSongThatPlaysGoesOnAtTheSameSecond)
{
    StartWith(3);
    PlayFrom(1, 30);
    const double was = GetPlayingPosition();
    const auto start = std::chrono::steady_clock::now();
    Edit(paths[1], "Another title");
    ASSERT_TRUE(WaitForState(1));
    ASSERT_TRUE(WaitRealTime([&] { return real.Time() >= 29'000; })); // the player, not the port
    const double now = GetPlayingPosition();
    // The position that it was stopped at, to the second, and what it has played since then.
    EXPECT_GE(now, was - 600);
    EXPECT_LE(now, was + static_cast<double>(tests::MsSince(start)) + 1500);
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
    EXPECT_EQ(GetPlaylistLength(), 3);
    const std::uint32_t at = real.Time();
    EXPECT_TRUE(WaitRealTime([&] { return real.Time() > at; })); // it does play
    RecordProperty("before_ms", static_cast<int>(was));
    RecordProperty("after_ms", static_cast<int>(now));
}

TEST_F(AudaciousEdit, APausedSongStaysPausedAtTheSameSecond)
{
    StartWith(2);
    PlayFrom(1, 40);
    PauseTrack();
    ASSERT_TRUE(WaitForState(3));
    const double was = GetPlayingPosition();
    Edit(paths[1], "Another title");
    ASSERT_TRUE(WaitForState(3));
    ASSERT_TRUE(WaitRealTime([&] { return real.Time() >= 39'000; }));
    EXPECT_NEAR(GetPlayingPosition(), was, 1100);
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
    std::uint32_t at = 0;
    EXPECT_TRUE(WaitRealTime([&] { // it may play out what it has read ahead, half a second
        at = real.Time();
        usleep(100'000); // only time shows that it is not moving
        return real.Time() == at;
    }));
    EXPECT_NEAR(static_cast<double>(at), was, 1100);
    PauseTrack(); // and plays on from there
    EXPECT_TRUE(WaitForState(1));
    EXPECT_TRUE(WaitRealTime([&] { return real.Time() > at; }));
}

TEST_F(AudaciousEdit, AnotherSongIsNotTouched)
{
    StartWith(2);
    PlayFrom(1, 20);
    std::uint32_t last = real.Time();
    int looks = 0;
    desktop.doEvents = [&] {
        EXPECT_EQ(real.Status(), "playing");
        const std::uint32_t now = real.Time();
        EXPECT_GE(now, last);
        last = now;
        ++looks;
    };
    Edit(paths[0], "Another title");
    EXPECT_GT(looks, 3);
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
}

TEST_F(AudaciousEdit, AStoppedPlayerStaysStopped)
{
    StartWith(2);
    PlayFrom(1, 20);
    StopTrack();
    ASSERT_TRUE(WaitForState(0));
    desktop.doEvents = [&] { EXPECT_EQ(real.Status(), "stopped"); };
    Edit(paths[1], "Another title");
    EXPECT_EQ(real.Status(), "stopped");
}

// A player that does not answer cannot be stopped: it continues to read the file that it has open.
TEST_F(AudaciousEdit, ASongThatThePlayerHoldsOpenIsReplacedAllTheSame)
{
    StartWith(2);
    PlayFrom(1, 20);
    struct stat old {
    }, now{};
    ASSERT_EQ(stat(paths[1].c_str(), &old), 0);
    platform::player::AudaciousPlayer limited; // to the program's own limit
    platform::TheMachine().player = &limited;
    ASSERT_TRUE(WaitRealTime(IsWinampRunning));
    // Another program has it open too.
    const int held = open(paths[1].c_str(), O_RDONLY | O_CLOEXEC);
    real.Signal(SIGSTOP);
    Edit(paths[1], "Another title");
    real.Signal(SIGCONT);
    ASSERT_EQ(stat(paths[1].c_str(), &now), 0);
    EXPECT_NE(now.st_ino, old.st_ino);
    EXPECT_TRUE(WaitForState(1));
    const std::uint32_t at = real.Time();
    EXPECT_TRUE(WaitRealTime([&] { return real.Time() > at; }));
    close(held);
}

TEST_F(AudaciousEdit, APlayerThatEndsMeanwhileIsLeftAlone)
{
    StartWith(2);
    PlayFrom(1, 20);
    bool killed = false;
    desktop.doEvents = [&] {
        if (!killed && real.Status() == "stopped") { // between the release and the new file
            killed = true;
            real.Kill();
        }
    };
    Edit(paths[1], "Another title");
    EXPECT_TRUE(killed);
    EXPECT_FALSE(IsWinampRunning());
}

// The program as a process in a terminal, beside the player.
TEST_F(AudaciousEdit, LyricsFromTheTerminal)
{
    StartWith(2);
    const char *quenlin = std::getenv("QUENLIN_PROGRAM");
    ASSERT_NE(quenlin, nullptr);
    std::filesystem::copy_file(tests::ShippedCatalogue(), program / "MP3s.mdb");
    PlayFrom(1, 30);
    tests::WriteFile(real.music / "1.txt", "[00:10]One line\r\n");
    bool stopped = false;
    const auto run = [&](const std::string &file) {
        const pid_t child = fork();
        if (child == 0) {
            setenv("QUENLIN_HOME", program.Path().c_str(), 1);
            execl(quenlin, quenlin, file.c_str(), nullptr);
            _exit(127);
        }
        int status = -1;
        EXPECT_TRUE(WaitRealTime([&] {
            stopped = stopped || real.Status() == "stopped";
            return waitpid(child, &status, WNOHANG) == child;
        }));
        return status;
    };
    EXPECT_EQ(run(paths[1]), 0); // its row
    EXPECT_FALSE(stopped);
    const std::uint32_t was = real.Time();
    EXPECT_EQ(run(real.music / "1.txt"), 0);
    EXPECT_TRUE(stopped);
    EXPECT_EQ(metadata::ReadSongInfo(paths[1]).id3v2.Lyrics, "[00:10]One line\r\n");
    ASSERT_TRUE(WaitForState(1));
    ASSERT_TRUE(WaitRealTime([&] { return real.Time() + 1000 >= was; }));
    EXPECT_LT(real.Time(), was + 20'000);
    EXPECT_EQ(GetCurrentSongPath(), paths[1]);
}

} // namespace
