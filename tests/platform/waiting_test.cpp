#include "platform/endrequest.h"
#include "platform/waiting.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace
{

using platform::WaitEnd;

class Waiting : public testing::Test
{
protected:
    ~Waiting() override { platform::RequestEnd(0); }

    tests::ScriptedDesktop desktop;
    tests::FakeClock clock;
};

TEST_F(Waiting, AConditionThatHoldsIsNotWaitedFor)
{
    EXPECT_EQ(platform::WaitUntil([] { return true; }, 0), WaitEnd::ConditionMet);
    EXPECT_EQ(desktop.yields, 0);
    EXPECT_EQ(clock.steadyMs, 0);
}

TEST_F(Waiting, EventsRunUntilItHolds)
{
    EXPECT_EQ(platform::WaitUntil([this] { return desktop.yields == 3; }, 1000),
              WaitEnd::ConditionMet);
    EXPECT_EQ(clock.steadyMs, 30);
}

TEST_F(Waiting, ItEndsAtItsLimit)
{
    EXPECT_EQ(platform::WaitUntil([] { return false; }, 1000), WaitEnd::Limit);
    EXPECT_EQ(clock.steadyMs, 1000);
}

TEST_F(Waiting, CancellingEndsAllThatAreUnderWay)
{
    WaitEnd inner = WaitEnd::ConditionMet;
    int depth = 0;
    desktop.doEvents = [&] {
        if (++depth == 1)
            inner = platform::WaitUntil([] { return false; }, 1000);
        else
            platform::CancelWaits();
    };
    EXPECT_EQ(platform::WaitUntil([] { return false; }, 1000), WaitEnd::Cancelled);
    EXPECT_EQ(inner, WaitEnd::Cancelled);
    EXPECT_EQ(desktop.yields, 2);
    desktop.doEvents = nullptr;
    // A later one.
    EXPECT_EQ(platform::WaitUntil([this] { return desktop.yields == 4; }, 1000),
              WaitEnd::ConditionMet);
}

TEST_F(Waiting, NoEventRunsWhileADiskMayStillAnswerAtOnce)
{
    int slow = 0;
    const auto keepWaiting = platform::WaitWithEvents([&slow] { ++slow; }, 500);
    EXPECT_TRUE(keepWaiting());
    clock.steadyMs += 99;
    EXPECT_TRUE(keepWaiting());
    EXPECT_EQ(slow, 0);
    EXPECT_EQ(desktop.yields, 0);
    clock.steadyMs += 1;
    desktop.doEvents = [&slow] { EXPECT_EQ(slow, 1); };
    EXPECT_TRUE(keepWaiting());
    clock.steadyMs += 399;
    EXPECT_TRUE(keepWaiting());
    EXPECT_EQ(slow, 1);
    EXPECT_EQ(desktop.yields, 2);
    clock.steadyMs += 1;
    EXPECT_FALSE(keepWaiting());
}

TEST_F(Waiting, ASignalEndsTheWaitForADisk)
{
    const auto keepWaiting = platform::WaitWithEvents([] {});
    EXPECT_TRUE(keepWaiting());
    platform::RequestEnd(SIGTERM);
    EXPECT_FALSE(keepWaiting());
    platform::RequestEnd(0);
    clock.steadyMs += platform::kDiskLimitMs;
    EXPECT_FALSE(keepWaiting());
}

TEST_F(Waiting, ASignalEndsIt)
{
    desktop.doEvents = [] { platform::RequestEnd(SIGTERM); };
    EXPECT_EQ(platform::WaitUntil([] { return false; }, 1000), WaitEnd::Cancelled);
    EXPECT_EQ(desktop.yields, 1);
}

} // namespace
