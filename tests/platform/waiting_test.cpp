#include "platform/endrequest.h"
#include "platform/waiting.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace
{

class Waiting : public testing::Test
{
protected:
    ~Waiting() override { platform::RequestEnd(0); }

    tests::ScriptedDesktop desktop;
    tests::FakeClock clock;
};

TEST_F(Waiting, AConditionThatHoldsIsNotWaitedFor)
{
    EXPECT_TRUE(platform::WaitUntil([] { return true; }, 0));
    EXPECT_EQ(desktop.yields, 0);
    EXPECT_EQ(clock.steadyMs, 0);
}

TEST_F(Waiting, EventsRunUntilItHolds)
{
    EXPECT_TRUE(platform::WaitUntil([this] { return desktop.yields == 3; }, 1000));
    EXPECT_EQ(clock.steadyMs, 30);
}

TEST_F(Waiting, ItEndsAtItsLimit)
{
    EXPECT_FALSE(platform::WaitUntil([] { return false; }, 1000));
    EXPECT_EQ(clock.steadyMs, 1000);
}

TEST_F(Waiting, CancellingEndsAllThatAreUnderWay)
{
    bool inner = true;
    int depth = 0;
    desktop.doEvents = [&] {
        if (++depth == 1)
            inner = platform::WaitUntil([] { return false; }, 1000);
        else
            platform::CancelWaits();
    };
    EXPECT_FALSE(platform::WaitUntil([] { return false; }, 1000));
    EXPECT_FALSE(inner);
    EXPECT_EQ(desktop.yields, 2);
    desktop.doEvents = nullptr;
    EXPECT_TRUE(platform::WaitUntil([this] { return desktop.yields == 4; }, 1000)); // a later one
}

TEST_F(Waiting, ASignalEndsIt)
{
    desktop.doEvents = [] { platform::RequestEnd(SIGTERM); };
    EXPECT_FALSE(platform::WaitUntil([] { return false; }, 1000));
    EXPECT_EQ(desktop.yields, 1);
}

} // namespace
