// How many helper threads fetch the files that were announced.
#include "platform/posix/disk/fetching.h"
#include "tests/support/heldfiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

using tests::AwaitEqual;
using tests::kNever;

namespace
{

using FetchingTest = tests::ReadAheadTest;

TEST(Slowness, OneSlowFileIsNoEvidence)
{
    constexpr struct {
        const char *files; // f = fast, s = slow
        bool isSlow;
    } cases[] = {{"", false},
                 {"s", false},
                 {"ffffsfffff", false},
                 {"ss", false},
                 {"sss", true},
                 {"fffffffffffffffsss", true},
                 {"sfsfsfsf", false},
                 {"sfsfsfsfsfsfsf", true},
                 {"sffffsffffsffffsffffsffff", false},
                 {"sssfff", false},
                 {"ssssssssssssssssssssssssssssss", true},
                 {"ssssssssssssssssssssssssssssssfffffff", false}};
    for (const auto &c : cases) {
        platform::posix::Slowness slowness;
        for (const char *file = c.files; *file != '\0'; ++file)
            slowness.Add(*file == 's');
        EXPECT_EQ(slowness.IsSlow(), c.isSlow) << c.files;
    }
}

// On a machine that does more than this test a second one may seem slow: one round without that
// shows the rule.
TEST_F(FetchingTest, OneSlowReadStartsNoHelper)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 60; ++i)
        paths.push_back(File(std::to_string(i), 500));
    const auto readAll = [&] {
        held->most = 0;
        std::thread later([&] {
            held->AwaitRead();
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
            held->Release();
        });
        held->Hold(kNever);
        files->Expect(paths, {100, 100, nullptr});
        for (const std::string &path : paths)
            EXPECT_EQ(Read(path, 0, 1),
                      std::filesystem::path(path).filename().string().substr(0, 1));
        later.join();
        files->ExpectNothing();
        AwaitEqual(held->closes, held->opens);
        return held->threads.size() == 1;
    };
    EXPECT_TRUE(tests::WaitUntil([&] {
        held->ForgetThreads();
        return readAll();
    }));
}

TEST_F(FetchingTest, SlowReadsStartHelpersUntilThereAreEnough)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 120; ++i)
        paths.push_back(File(std::to_string(i), 500));
    held->delay = std::chrono::milliseconds(3);
    files->Expect(paths, {100, 100, nullptr});
    for (const std::string &path : paths)
        EXPECT_EQ(Read(path, 0, 1), std::filesystem::path(path).filename().string().substr(0, 1));
    EXPECT_GE(held->most, 8);
}

} // namespace
