#include "player/playing.h"
#include "tests/support/recordingplayer.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

using tests::kPause;
using tests::kPlay;
using tests::kStop;

namespace
{

using Lines = std::vector<std::string>;

class Playing : public testing::Test
{
protected:
    Playing()
    {
        port.SetPlaylist("#EXTM3U\r\n/0.mp3\r\n/1.mp3\r\n/song.mp3\r\n");
        port.Answer(104, 1);
        port.Answer(105, 61'500);
        port.Answer(124, 3);
        port.Answer(125, 2);
        player::IsWinampRunning();
        port.Received();
    }

    std::string Release() { return player::ReleasePlayingFile("/song.mp3", m_state, m_position); }

    // The messages that change something, without those that only ask.
    Lines Orders()
    {
        Lines orders;
        for (const std::string &line : port.Received())
            if (line.starts_with("273") || line.starts_with("copy") || line.ends_with(" 121") ||
                line.ends_with(" 106"))
                orders.push_back(line);
        return orders;
    }

    tests::ScriptedDesktop desktop;
    tests::RecordingPlayer port;
    std::int32_t m_state = -7, m_position = -9;
};

TEST_F(Playing, NoPlayer)
{
    port.window = 0;
    EXPECT_EQ(Release(), "");
    EXPECT_EQ(m_state, -7);
    EXPECT_EQ(m_position, -9);
    player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 5);
    EXPECT_EQ(port.Received(), Lines(2, "find Winamp v1.x"));
}

TEST_F(Playing, TheSongItself)
{
    EXPECT_EQ(Release(), "/song.mp3");
    EXPECT_EQ(m_state, 1);
    EXPECT_EQ(m_position, 61'500);
    EXPECT_EQ(Orders(), Lines{kStop});
    player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 61'500);
    EXPECT_EQ(Orders(), (Lines{"1024 2 121", kPlay, "1024 62000 106"})); // half to even
}

TEST_F(Playing, APausedSongComesBackPaused)
{
    port.Answer(104, 3);
    EXPECT_EQ(Release(), "/song.mp3");
    EXPECT_EQ(Orders(), Lines{kStop});
    player::RestorePlayingFile("/song.mp3", "/song.mp3", m_state, 60'500);
    EXPECT_EQ(Orders(), (Lines{"1024 2 121", kPlay, "1024 60000 106", kPause}));
}

TEST_F(Playing, AnotherSong)
{
    port.SetPlaylist("#EXTM3U\r\n\r\n\r\n/SONG.mp3\r\n"); // the comparison is exact
    EXPECT_EQ(Release(), "/SONG.mp3");
    EXPECT_EQ(m_state, 1);
    EXPECT_EQ(m_position, -9);
    player::RestorePlayingFile("/SONG.mp3", "/song.mp3", 1, 0);
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(Playing, Stopped)
{
    port.Answer(104, 0);
    EXPECT_EQ(Release(), "");
    EXPECT_EQ(m_state, 0);
    EXPECT_EQ(port.Received(), (Lines{"find Winamp v1.x", "1024 0 104"}));
}

TEST_F(Playing, ASongThatTheListLacksIsAddedAndOnePastItSelected)
{
    port.onEnqueue = [this] { port.Answer(124, 4); };
    player::RestorePlayingFile("/new.mp3", "/new.mp3", 1, 0);
    EXPECT_EQ(Orders(), (Lines{"copy 100 9 /new.mp3", "1024 4 121", kPlay, "1024 0 106"}));
}

TEST_F(Playing, ASongThatIsOnlyTheBeginningOfALongerPath)
{
    player::RestorePlayingFile("/song", "/song", 1, 0);
    EXPECT_EQ(Orders(), (Lines{"1024 -1 121", kPlay, "1024 0 106"}));
}

TEST_F(Playing, TheListIsLearntBeforeItIsSearched)
{
    port.SetPlaylist("#EXTM3U\r\n");
    port.onLearn = [this] { port.SetPlaylist("#EXTM3U\r\n/song.mp3\r\n"); };
    EXPECT_EQ(player::PlaceInPlaylist("/song.mp3"), 0);
}

TEST_F(Playing, AListThat16BitsDoNotCountGetsNoSong)
{
    port.Answer(124, 32767);
    EXPECT_THROW(player::PlaceInPlaylist("/new.mp3"), runtime::RuntimeError);
    EXPECT_EQ(Orders(), Lines());
    port.Answer(124, 32766);
    port.onEnqueue = [this] { port.Answer(124, 32767); };
    EXPECT_EQ(player::PlaceInPlaylist("/new.mp3"), 32767);
}

TEST_F(Playing, ASongThatThePlayerDoesNotTakeIsNotPlayed)
{
    port.refusesFiles = true;
    EXPECT_THROW(player::RestorePlayingFile("/new.mp3", "/new.mp3", 1, 0), runtime::RuntimeError);
    EXPECT_EQ(Orders(), Lines{"copy 100 9 /new.mp3"});
}

} // namespace
