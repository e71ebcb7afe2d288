#include "platform/spawn.h"
#include "tests/support/testfolder.h"
#include "tests/support/wait.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using namespace platform;

TEST(FindProgram, LooksOnThePath)
{
    EXPECT_FALSE(FindProgram("sh").empty());
    EXPECT_EQ(FindProgram("/bin/sh"), "/bin/sh");
    EXPECT_EQ(FindProgram("no such program"), "");
    EXPECT_EQ(FindProgram("/etc/passwd"), ""); // cannot be run
    EXPECT_EQ(FindProgram("/tmp"), "");
}

TEST(RunQuietly, ReportsHowItEnded)
{
    EXPECT_TRUE(RunQuietly({"true"}, 5000));
    EXPECT_FALSE(RunQuietly({"false"}, 5000));
    EXPECT_FALSE(RunQuietly({"no such program"}, 5000));
    EXPECT_FALSE(RunQuietly({"sleep", "1"}, 20)); // after the limit it is not waited for
}

TEST(StartDetached, RunsInTheFolderAndIsNotWaitedFor)
{
    const tests::TestFolder folder;
    constexpr const char *kWhenAllowed = "while [ ! -e \"$0.go\" ]; do sleep 0.01; done; "
                                         "pwd > \"$0.tmp\"; mv \"$0.tmp\" \"$0\"";
    ASSERT_TRUE(StartDetached({"sh", "-c", kWhenAllowed, folder / "out"}, folder.Path()));
    tests::WriteFile(folder / "out.go", "");
    ASSERT_TRUE(tests::WaitUntil([&] { return std::filesystem::exists(folder / "out"); }));
    EXPECT_EQ(tests::ReadFile(folder / "out"),
              std::filesystem::canonical(folder.Path()).string() + "\n");
    EXPECT_FALSE(StartDetached({"no such program"}, "/"));
}

// Neither a file of ours nor a signal that we ignore reaches the program, and one that has ended
// does not stay in the process table for ever.
TEST(StartDetached, GivesNothingOfOursAway)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "open", "x");
    const int open = ::open((folder / "open").c_str(), O_RDONLY); // NOLINT: not closed on exec
    ASSERT_GE(open, 3);
    const auto before = signal(SIGPIPE, SIG_IGN);
    const std::string script = "ls /proc/$$/fd >\"$0\".tmp; grep SigIgn /proc/$$/status "
                               ">>\"$0\".tmp; echo $$ >>\"$0\".tmp; mv \"$0\".tmp \"$0\"";
    ASSERT_TRUE(StartDetached({"bash", "-c", script, folder / "out"}, "/no such folder"));
    ASSERT_TRUE(tests::WaitUntil([&] { return std::filesystem::exists(folder / "out"); }));
    signal(SIGPIPE, before);
    close(open);
    std::istringstream out(tests::ReadFile(folder / "out"));
    std::vector<std::string> words{std::istream_iterator<std::string>(out), {}};
    const std::string child = words.back();
    const auto mask =
        std::stoul(*(std::find(words.begin(), words.end(), "SigIgn:") + 1), nullptr, 16);
    EXPECT_EQ(mask & (1UL << (SIGPIPE - 1)), 0U);
    EXPECT_EQ(std::count(words.begin(), words.end(), std::to_string(open)), 0);
    EXPECT_TRUE(tests::WaitUntil([&] {
        EXPECT_TRUE(RunQuietly({"true"}, 5000));
        return !std::filesystem::exists("/proc/" + child);
    }));
}

// A program in place of the desktop's opener; the only one on PATH besides those of the operating
// system.
class OpenerTest : public testing::Test
{
protected:
    OpenerTest()
    {
        if (const char *path = std::getenv("PATH"); path != nullptr)
            m_path = path;
    }
    ~OpenerTest() override { setenv("PATH", m_path.c_str(), 1); }

    // Makes `script` the opener; it runs in the folder of this test.
    void Opener(const std::string &script)
    {
        tests::WriteFile(folder / "xdg-open", "#!/bin/sh\ncd \"$(dirname \"$0\")\"\n" + script);
        std::filesystem::permissions(folder / "xdg-open", std::filesystem::perms::owner_all);
        setenv("PATH", (folder.Path() + ":" + m_path).c_str(), 1);
    }

    tests::TestFolder folder;

private:
    std::string m_path;
};

TEST_F(OpenerTest, PassesTheAddressByteForByte)
{
    Opener("printf '%s' \"$1\" >out\nprintf '%s' $# >count\n");
    const std::string address = "mailto:a@b.example?Subject=x&Body=50% \"a\"\n?&%0A$(id) \xFF";
    EXPECT_TRUE(OpenWithDesktop(address, "C:\\"));
    EXPECT_EQ(tests::ReadFile(folder / "out"), address);
    EXPECT_EQ(tests::ReadFile(folder / "count"), "1");
}

TEST_F(OpenerTest, CutsWhatNoProgramCanBeGiven)
{
    Opener("printf '%s' \"$1\" >out\n");
    std::string address = "mailto:";
    while (address.size() < 300'000)
        address += "ñ";
    EXPECT_TRUE(OpenWithDesktop(address, ""));
    const std::string out = tests::ReadFile(folder / "out");
    EXPECT_TRUE(out.size() > 90'000 && out.size() <= 100'000);
    EXPECT_TRUE(address.starts_with(out));
    EXPECT_EQ(out.substr(out.size() - 2), "ñ");
}

TEST_F(OpenerTest, ReportsARefusalAndDoesNotWaitForTheRest)
{
    Opener("exit 3\n");
    EXPECT_FALSE(OpenWithDesktop("mailto:x", ""));
    Opener("exec sleep 5\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(OpenWithDesktop("mailto:x", ""));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    std::filesystem::remove(folder / "xdg-open");
    setenv("PATH", folder.Path().c_str(), 1);
    EXPECT_FALSE(OpenWithDesktop("mailto:x", ""));
}

} // namespace
