#include "platform/posix/systemclock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace
{

using platform::posix::SystemClock;

class Clock : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const char *all = std::getenv("LC_ALL");
        former = all != nullptr ? all : "";
    }
    void TearDown() override
    {
        if (former.empty())
            unsetenv("LC_ALL");
        else
            setenv("LC_ALL", former.c_str(), 1);
    }

    std::string former;
};

TEST_F(Clock, NeutralFormsAreUnambiguous)
{
    setenv("LC_ALL", "C.UTF-8", 1);
    SystemClock clock;
    const platform::LocalTime time{2026, 11, 3, 1, 4, 50};
    EXPECT_EQ(clock.DateText(time), "2026-11-03");
    EXPECT_EQ(clock.TimeText(time), "01:04:50");
}

TEST_F(Clock, ALocaleThatIsNotInstalledHasTheNeutralForm)
{
    setenv("LC_ALL", "xx_XX.UTF-8", 1);
    SystemClock clock;
    EXPECT_EQ(clock.DateText({2026, 1, 2, 3, 4, 5}), "2026-01-02");
}

TEST_F(Clock, ReturnsTheSameTimeAsTheCLibrary)
{
    SystemClock clock;
    const std::time_t before = std::time(nullptr);
    const platform::LocalTime now = clock.Now();
    const double seconds = clock.SecondsOfDay();
    const std::time_t after = std::time(nullptr);
    std::tm calendar{};
    calendar.tm_year = now.year - 1900;
    calendar.tm_mon = now.month - 1;
    calendar.tm_mday = now.day;
    calendar.tm_hour = now.hour;
    calendar.tm_min = now.minute;
    calendar.tm_sec = now.second;
    calendar.tm_isdst = -1;
    const std::time_t converted = std::mktime(&calendar);
    EXPECT_GE(converted, before);
    EXPECT_LE(converted, after);
    EXPECT_GE(seconds, 0);
    EXPECT_LT(seconds, 86401);
}

TEST_F(Clock, SleepPassesTime)
{
    SystemClock clock;
    const auto before = clock.SteadyMs();
    clock.Sleep(20);
    EXPECT_GE(clock.SteadyMs() - before, 19);
    clock.Sleep(-5);
}

} // namespace
