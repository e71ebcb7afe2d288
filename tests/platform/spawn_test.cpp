#include "platform/posix/spawn.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
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

// A stand-in for the desktop's opener, the only program on PATH beside the system's.
class OpenerTest : public testing::Test
{
protected:
    OpenerTest()
    {
        if (const char *path = std::getenv("PATH"); path != nullptr)
            m_path = path;
    }
    ~OpenerTest() override { setenv("PATH", m_path.c_str(), 1); }

    // Lets the opener be `script`, which finds the folder of this test in $0's place.
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

TEST_F(OpenerTest, HandsTheAddressOverByteForByte)
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

TEST_F(OpenerTest, TellsARefusalAndDoesNotWaitForTheRest)
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
