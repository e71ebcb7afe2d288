#include "platform/process.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace
{

TEST(ReturnsInCopy, SaysHowTheTrialEnded)
{
    EXPECT_TRUE(platform::ReturnsInCopy([] {}));
    EXPECT_FALSE(platform::ReturnsInCopy([] { std::abort(); }));
    EXPECT_FALSE(platform::ReturnsInCopy([] { _exit(3); }));
    EXPECT_FALSE(platform::ReturnsInCopy([] { raise(SIGKILL); }));
}

TEST(ReturnsInCopy, LeavesThisProcessAndItsMessagesAlone)
{
    const tests::TestFolder folder;
    int value = 1;
    const int before = dup(STDERR_FILENO);
    ASSERT_NE(std::freopen((folder / "messages").c_str(), "w", stderr), nullptr);
    EXPECT_TRUE(platform::ReturnsInCopy([&] {
        value = 2;
        std::fputs("from the copy", stderr);
        std::fflush(stderr);
    }));
    std::fputs("from here", stderr);
    std::fflush(stderr);
    dup2(before, STDERR_FILENO);
    close(before);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(tests::ReadFile(folder / "messages"), "from here");
}

TEST(OpenLibrary, FindsWhatALibraryExportsOrReportsWhyNot)
{
    std::string why;
    void *library = platform::OpenLibrary(platform::LibraryFileName("libz") + ".1", why);
    ASSERT_NE(library, nullptr) << why;
    EXPECT_NE(platform::FindInLibrary(library, "crc32", why), nullptr);
    EXPECT_EQ(why, "");
    EXPECT_EQ(platform::FindInLibrary(library, "no such name", why), nullptr);
    EXPECT_NE(why.find("no such name"), std::string::npos) << why;
    EXPECT_EQ(platform::OpenLibrary("/no such library.so", why), nullptr);
    EXPECT_NE(why.find("/no such library.so"), std::string::npos) << why;
}

} // namespace
