#include "player/nowplaying.h"
#include "tests/support/recordingplayer.h"

#include <gtest/gtest.h>

namespace
{

TEST(GetPlayingTimeStatus, Table)
{
    tests::RecordingPlayer port;
    constexpr struct {
        const char *name;
        std::int32_t positionMs, lengthS;
        const char *want;
        float position;
    } rows[] = {
        {"nothing", 0, 0, "00:00 / 00:00", 0},
        {"half to even, up", 61'500, 205, "01:02 / 03:25", 61.5F},
        {"half to even, down", 2'500, 60, "00:02 / 01:00", 2.5F},
        {"over the half", 2'501, 61, "00:03 / 01:01", 2.501F},
        {"to the minute", 59'500, 5999, "01:00 / 99:59", 59.5F},
        {"100 minutes lose their first digit", 6'000'000, 8410, "00:00 / 40:10", 6000.F},
        {"single precision", 2'147'483'647, 1, "91:24 / 00:01", 2147483.75F},
    };
    player::IsWinampRunning();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        port.Answer(105, row.positionMs);
        port.Answer(105, row.lengthS, 1);
        float position = -1;
        EXPECT_EQ(player::GetPlayingTimeStatus(&position), row.want);
        EXPECT_EQ(position, row.position);
        EXPECT_EQ(player::GetPlayingTimeStatus(), row.want);
    }
}

TEST(GetPlayingTimeStatus, AsksTheLengthFirst)
{
    tests::RecordingPlayer port;
    player::IsWinampRunning();
    port.Received();
    player::GetPlayingTimeStatus();
    EXPECT_EQ(port.Received(), (std::vector<std::string>{"1024 1 105", "1024 0 105"}));
}

} // namespace
