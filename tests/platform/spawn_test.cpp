#include "platform/posix/spawn.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace
{

using namespace platform::posix;

TEST(FindProgram, LooksOnThePath)
{
    EXPECT_FALSE(FindProgram("sh").empty());
    EXPECT_EQ(FindProgram("/bin/sh"), "/bin/sh");
    EXPECT_EQ(FindProgram("no such program"), "");
    EXPECT_EQ(FindProgram("/etc/passwd"), ""); // cannot be run
    EXPECT_EQ(FindProgram("/tmp"), "");
}

TEST(RunQuietly, TellsHowItEnded)
{
    EXPECT_TRUE(RunQuietly({"true"}, 5000));
    EXPECT_FALSE(RunQuietly({"false"}, 5000));
    EXPECT_FALSE(RunQuietly({"no such program"}, 5000));
    EXPECT_FALSE(RunQuietly({"sleep", "1"}, 20));
}

TEST(StartDetached, RunsInTheFolderAndIsNotWaitedFor)
{
    const tests::TestFolder folder;
    ASSERT_TRUE(StartDetached(
        {"sh", "-c", "sleep 0.05; pwd > \"$0\".tmp; mv \"$0\".tmp \"$0\"", folder / "out"},
        folder.Path()));
    for (int i = 0; i < 500 && !std::filesystem::exists(folder / "out"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(tests::ReadFile(folder / "out"),
              std::filesystem::canonical(folder.Path()).string() + "\n");
    EXPECT_FALSE(StartDetached({"no such program"}, "/"));
}

} // namespace
