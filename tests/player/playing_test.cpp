#include "platform/machine.h"
#include "platform/player.h"
#include "player/playing.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

// Notes what it is told.
struct NotedPlayer : platform::Player {
    bool IsRunning() override { return running; }
    std::int32_t PlayingState() override { return state; }
    std::string CurrentSongPath() override { return current; }
    double PlayingPosition() override { return positionMs; }
    bool IsInPlaylist(const std::string &) override { return listed; }
    std::int16_t PlaylistIndexOf(const std::string &) override { return index; }
    std::int16_t PlaylistLength() override { return 8; }
    void EnqueueFile(const std::string &path) override { told.push_back("enqueue " + path); }
    void SetPlaylistPosition(std::int16_t place) override
    {
        told.push_back("select " + std::to_string(place));
    }
    void PlayTrack() override { told.push_back("play"); }
    void PauseTrack() override { told.push_back("pause"); }
    void StopTrack() override { told.push_back("stop"); }
    void JumpToTime(std::int32_t seconds, std::int32_t milliseconds) override
    {
        told.push_back("jump " + std::to_string(seconds) + " " + std::to_string(milliseconds));
    }

    bool running = true, listed = true;
    std::int32_t state = 1;
    std::int16_t index = 4;
    std::string current = "/song.mp3";
    double positionMs = 61'500.4;
    std::vector<std::string> told;
};

using Told = std::vector<std::string>;

class Playing : public testing::Test
{
protected:
    void SetUp() override { platform::TheMachine().player = &m_player; }
    void TearDown() override { platform::TheMachine().player = nullptr; }

    std::string Release() { return player::ReleasePlayingFile("/song.mp3", m_state, m_position); }

    NotedPlayer m_player;
    std::int32_t m_state = -7, m_position = -9;
};

TEST_F(Playing, NoPlayer)
{
    for (const bool port : {true, false}) {
        m_player.running = false;
        platform::TheMachine().player = port ? &m_player : nullptr;
        EXPECT_EQ(Release(), "");
        EXPECT_EQ(m_state, -7);
        EXPECT_EQ(m_position, -9);
        player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 5);
        EXPECT_EQ(m_player.told, Told());
    }
}

TEST_F(Playing, TheSongItself)
{
    EXPECT_EQ(Release(), "/song.mp3");
    EXPECT_EQ(m_state, 1);
    EXPECT_EQ(m_position, 61'500);
    EXPECT_EQ(m_player.told, Told{"stop"});
    m_player.told.clear();
    player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 61'500);
    EXPECT_EQ(m_player.told, (Told{"select 4", "play", "jump 62 0"})); // half to even
}

TEST_F(Playing, APausedSongComesBackPaused)
{
    m_player.state = 3;
    EXPECT_EQ(Release(), "/song.mp3");
    m_player.told.clear();
    player::RestorePlayingFile("/song.mp3", "/song.mp3", m_state, 60'500);
    EXPECT_EQ(m_player.told, (Told{"select 4", "play", "jump 60 0", "pause"}));
}

TEST_F(Playing, AnotherSong)
{
    m_player.current = "/SONG.mp3"; // the comparison is exact
    EXPECT_EQ(Release(), "/SONG.mp3");
    EXPECT_EQ(m_state, 1);
    EXPECT_EQ(m_position, -9);
    player::RestorePlayingFile("/SONG.mp3", "/song.mp3", 1, 0);
    EXPECT_EQ(m_player.told, Told());
}

TEST_F(Playing, Stopped)
{
    m_player.state = 0;
    EXPECT_EQ(Release(), "");
    EXPECT_EQ(m_state, 0);
    EXPECT_EQ(m_player.told, Told());
}

TEST_F(Playing, ASongThatTheListLacksOrHasAsAPrefix)
{
    m_player.listed = false;
    player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 0);
    EXPECT_EQ(m_player.told, (Told{"enqueue /song.mp3", "select 8", "play", "jump 0 0"}));
    m_player.told.clear();
    m_player.listed = true;
    m_player.index = -1;
    player::RestorePlayingFile("/song.mp3", "/song.mp3", 1, 0);
    EXPECT_EQ(m_player.told, (Told{"select -1", "play", "jump 0 0"}));
}

} // namespace
