#include "platform/endrequest.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace
{

TEST(EndRequest, IsThrownAtTheNextCheck)
{
    EXPECT_NO_THROW(platform::CheckEndRequest());
    platform::RequestEnd(SIGTERM);
    try {
        platform::CheckEndRequest();
        ADD_FAILURE() << "no end";
    } catch (const platform::EndRequested &end) {
        EXPECT_EQ(end.signalNo, SIGTERM);
    }
    platform::RequestEnd(0);
    EXPECT_NO_THROW(platform::CheckEndRequest());
}

TEST(EndRequest, WakesWhoWaitsOnTheDescriptor)
{
    platform::RequestEnd(SIGTERM); // before anybody waits
    pollfd waiting{platform::EndRequestDescriptor(), POLLIN, 0};
    ASSERT_GE(waiting.fd, 0);
    EXPECT_EQ(poll(&waiting, 1, 0), 1);
    platform::RequestEnd(0);
    std::uint64_t count = 0;
    ASSERT_EQ(read(waiting.fd, &count, sizeof count), static_cast<ssize_t>(sizeof count));
    EXPECT_EQ(poll(&waiting, 1, 0), 0);
    platform::RequestEnd(SIGTERM);
    EXPECT_EQ(poll(&waiting, 1, 0), 1);
    platform::RequestEnd(0);
    ASSERT_EQ(read(waiting.fd, &count, sizeof count), static_cast<ssize_t>(sizeof count));
}

TEST(EndRequest, WaitsForADeferral)
{
    platform::RequestEnd(SIGINT);
    {
        const platform::EndDeferral outer;
        {
            const platform::EndDeferral inner;
            EXPECT_NO_THROW(platform::CheckEndRequest());
        }
        EXPECT_NO_THROW(platform::CheckEndRequest());
    }
    EXPECT_THROW(platform::CheckEndRequest(), platform::EndRequested);
    platform::RequestEnd(0);
}

TEST(EndRequest, TheFirstSignalAsksAndTheSecondEnds)
{
    const pid_t child = fork();
    if (child == 0) {
        platform::WatchForEndRequest();
        raise(SIGTERM);
        try {
            platform::CheckEndRequest();
        } catch (const platform::EndRequested &) {
            raise(SIGTERM);
        }
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

} // namespace
