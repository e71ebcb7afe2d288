// How many helper threads fetch the files that were announced.
#include "platform/posix/disk/fetching.h"
#include "tests/support/heldfiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
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

// On a busy machine a second read may be slow too; one round in which that does not happen is
// enough.
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

// While a helper waits for a disk, the logic's thread fetches what it can read without waiting.
TEST_F(FetchingTest, TheLogicFetchesFromMemoryInsteadOfWaiting)
{
    constexpr struct {
        const char *name;
        std::int64_t withoutWait;
        int wantReads; // at least: a whole file, else one try
    } cases[] = {{"in memory", 0, 2}, {"on the disk", -EAGAIN, 1}, {"unknown", -EOPNOTSUPP, 1}};
    std::vector<std::string> paths;
    for (int i = 0; i < 10; ++i)
        paths.push_back(File(std::to_string(i), 500));
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        held->withoutWait = c.withoutWait;
        held->readsWithoutWait = held->opens = held->closes = 0;
        held->Hold(kNever);
        files->Expect(paths, {100, 100, nullptr});
        held->AwaitRead();
        std::thread later([&] {
            EXPECT_TRUE(tests::WaitUntil([&] { return held->readsWithoutWait >= c.wantReads; }));
            held->Release();
        });
        for (const std::string &path : paths) {
            const std::string name = std::filesystem::path(path).filename().string();
            EXPECT_EQ(Read(path, 0, 2), name + "0");
            EXPECT_EQ(Read(path, 498, 9).size(), 2U) << "read again, as a file no longer expected";
        }
        later.join();
        EXPECT_GE(held->readsWithoutWait, c.wantReads);
        files->ExpectNothing();
        AwaitEqual(held->closes, held->opens);
    }
}

} // namespace
