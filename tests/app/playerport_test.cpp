#include "app/playerport.h"
#include "platform/machine.h"
#include "player/winampmod.h"
#include "runtime/error.h"
#include "shell/settings.h"
#include "tests/support/memorysettings.h"

#include <gtest/gtest.h>

namespace
{

class PlayerPort : public testing::Test
{
protected:
    ~PlayerPort() override { platform::TheMachine().player = nullptr; }

    tests::MemorySettings settings;
};

TEST_F(PlayerPort, TheDefaultIsAudacious)
{
    EXPECT_EQ(app::PlayerName(), "Audacious");
    EXPECT_EQ(app::MakePlayer(app::PlayerName())->Name(), "Audacious");
}

TEST_F(PlayerPort, TheSettingNamesThePlayer)
{
    shell::SaveSetting("Extras", "Player", "Other");
    EXPECT_EQ(app::PlayerName(), "Other");
    EXPECT_EQ(app::MakePlayer(app::PlayerName())->Name(), "Other");
}

// Until its first use the player counts as one that does not run.
TEST_F(PlayerPort, AnUnknownNameIsReportedAtTheFirstUse)
{
    const std::unique_ptr<platform::Player> port = app::MakePlayer("audacious"); // case counts
    platform::TheMachine().player = port.get();
    EXPECT_FALSE(player::IsWinampRunning());
    EXPECT_EQ(player::GetPlayingState(), 0);
    EXPECT_EQ(player::EnqueueFile("/a.mp3"), 0);
    EXPECT_EQ(player::GetWinampFolder(), "");
    EXPECT_EQ(player::GetCurrentSongPath(), "");
    try {
        port->StartProgram(player::GetWinampExePath(), 2);
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_NE(error.description.find("\"audacious\""), std::string::npos) << error.description;
        EXPECT_NE(error.description.find("Known: Audacious."), std::string::npos)
            << error.description;
    }
}

} // namespace
