// Files that were announced: reading them returns the same as without, several helper threads read
// at the same time, and the end never waits for a helper.
#include "platform/endrequest.h"
#include "platform/posix/disk/readahead.h"
#include "tests/support/heldfiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;
using platform::FileIdentity;
using platform::FileKind;
using platform::WantedBytes;
using platform::posix::ReadAheadFiles;
using platform::posix::SystemFilesPort;
using tests::AwaitEqual;
using tests::kNever;
using tests::ReadAheadTest;

namespace
{

// The whole file, read in pieces through a port.
std::string Whole(platform::Files &files, const std::string &path, FileIdentity &identity)
{
    std::string whole;
    const int handle = files.OpenToRead(path, identity);
    char piece[700];
    for (std::int64_t got = 1; handle >= 0 && got > 0;
         whole.append(piece, static_cast<std::size_t>(got)))
        got = files.ReadAt(handle, static_cast<std::int64_t>(whole.size()), piece, sizeof piece,
                           true);
    files.Close(handle);
    return whole;
}

TEST_F(ReadAheadTest, BytesAndIdentitiesAreThoseOfThePlainPort)
{
    std::vector<std::string> paths;
    for (const std::size_t bytes : {0, 1, 99, 100, 101, 149, 150, 151, 1000, 5000, 300'000})
        paths.push_back(File("f" + std::to_string(bytes), bytes));
    const WantedBytes cases[] = {
        {100, 50, nullptr},
        {100, 0, nullptr},
        {100, 50,
         [](std::string_view start, std::int64_t size) { return start.empty() ? 0 : size - 10; }},
        {100, 50, [](std::string_view, std::int64_t) -> std::int64_t { return -1; }},
        {0, 7, nullptr}};
    for (const WantedBytes &wanted : cases) {
        files->Expect(paths, wanted);
        for (const std::string &path : paths) {
            SCOPED_TRACE(path);
            SystemFilesPort plain;
            FileIdentity want, got;
            const std::string bytes = Whole(plain, path, want);
            want.changedNs -= held->ageNs;
            EXPECT_EQ(Whole(*files, path, got), bytes);
            EXPECT_EQ(got, want);
            EXPECT_EQ(Read(path, want.sizeBytes + 5, 10), "");
        }
        files->ExpectNothing();
    }
    AwaitEqual(held->closes, held->opens);
}

TEST_F(ReadAheadTest, SeveralFilesAreReadAtATime)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 40; ++i)
        paths.push_back(File(std::to_string(i), 500));
    held->Hold(8); // each read ends only when eight have begun
    files->Expect(paths, {100, 100, nullptr});
    held->AwaitRead();
    EXPECT_EQ(Read(paths[0], 0, 4), "0001");
    EXPECT_GE(held->most, 8);
    EXPECT_EQ(Read(paths[39], 0, 4), "3903");
}

TEST_F(ReadAheadTest, WhatIsOnItsWayIsNotThereWithoutAWait)
{
    const std::string path = File("a", 500);
    held->Hold(kNever);
    files->Expect({path}, {100, 100, nullptr});
    held->AwaitRead();
    FileIdentity identity;
    const int handle = files->OpenToRead(path, identity);
    char byte = 0;
    EXPECT_EQ(files->ReadAt(handle, 0, &byte, 1, false), -EAGAIN);
    held->Release();
    EXPECT_EQ(files->ReadAt(handle, 0, &byte, 1, true), 1);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(files->ReadAt(handle, 450, &byte, 1, false), 1);
    EXPECT_EQ(held->opens, 1);
    EXPECT_EQ(held->reads, 2) << "the beginning and the end, by the helper";
    files->Close(handle);
    EXPECT_EQ(held->closes, 1);
}

TEST_F(ReadAheadTest, FileThatVanishedChangedOrWasReplacedIsNotWhatWasFetched)
{
    for (const bool isFresh : {false, true}) { // a change that the time stamp may hide
        std::vector<std::string> paths;
        for (const char *name : {"gone", "changed", "replaced", "same"})
            paths.push_back(File(name, 500));
        held->ageNs = isFresh ? -3'600'000'000'000 : 3'600'000'000'000;
        held->opens = held->closes = 0;
        files->Expect(paths, {100, 100, nullptr});
        AwaitEqual(held->opens, 4);
        fs::remove(paths[0]);
        tests::WriteFile(paths[1], "new bytes");
        tests::WriteFile(folder / "new", "other");
        fs::rename(folder / "new", paths[2]);
        EXPECT_EQ(Read(paths[0], 0, 5), "error " + std::to_string(ENOENT));
        EXPECT_EQ(Read(paths[1], 0, 9), "new bytes");
        EXPECT_EQ(Read(paths[2], 0, 9), "other");
        EXPECT_EQ(Read(paths[3], 0, 5), "same0");
        EXPECT_EQ(held->opens, isFresh ? 8 : 7);
        files->ExpectNothing();
        AwaitEqual(held->closes, held->opens - 1); // the deleted one has opened no handle
    }
}

TEST_F(ReadAheadTest, APipeIsOpenedOnceAndNotRead)
{
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::string behind = File("behind", 500);
    files->Expect({folder / "pipe", folder / "absent", behind}, {100, 100, nullptr});
    AwaitEqual(held->opens, 3);
    FileIdentity identity;
    const int handle = files->OpenToRead(folder / "pipe", identity);
    EXPECT_GE(handle, 0);
    EXPECT_EQ(identity.kind, FileKind::Other);
    files->Close(handle);
    EXPECT_EQ(held->opens, 3);
    EXPECT_EQ(Read(folder / "absent", 0, 1), "error " + std::to_string(ENOENT));
    EXPECT_EQ(Read(behind, 0, 6), "behind");
}

TEST_F(ReadAheadTest, TheStartIsGivenOnceAndTheRestIsRead)
{
    const std::string path = File("a", 500), other = File("b", 500);
    files->Expect({path}, {100, 50, nullptr});
    AwaitEqual(held->reads, 2);
    FileIdentity identity;
    const int handle = files->OpenToRead(path, identity);
    platform::ByteBuffer bytes(3, 'x');
    std::unique_ptr<platform::Digest> digest;
    ASSERT_EQ(files->TakeStart(handle, bytes, digest), 100U);
    EXPECT_EQ(digest, nullptr) << "nothing was to be found";
    EXPECT_EQ(std::string(bytes.data(), 4), "a0a1");
    EXPECT_EQ(files->TakeStart(handle, bytes, digest), 0U);
    char piece[450] = {};
    EXPECT_EQ(files->ReadAt(handle, 450, piece, sizeof piece, true), 50) << "the end";
    EXPECT_EQ(held->reads, 2);
    EXPECT_EQ(files->ReadAt(handle, 0, piece, 4, true), 4);
    EXPECT_EQ(std::string(piece, 4), "a0a1");
    files->Close(handle);
    files->Expect({other}, {100, 50, nullptr});
    AwaitEqual(held->reads, 5);
    EXPECT_EQ(Read(other, 0, 4), "b0b1") << "the buffer that was given back is not another file's";
    const int unexpected = files->OpenToRead(path, identity);
    EXPECT_EQ(files->TakeStart(unexpected, bytes, digest), 0U);
    files->Close(unexpected);
    files->ExpectNothing();
    AwaitEqual(held->closes, held->opens);
}

struct Letters : platform::Digest {
    const char *place = nullptr;
    std::string start;
    std::thread::id thread;
};

TEST_F(ReadAheadTest, WhatIsFoundInTheFirstBytesComesWithThem)
{
    const std::string first = File("a", 500), second = File("b", 500);
    const auto find = [](std::string_view start,
                         std::int64_t sizeBytes) -> std::unique_ptr<platform::Digest> {
        auto found = std::make_unique<Letters>();
        found->place = start.data();
        found->start = std::string(start.substr(0, 4)) + " " + std::to_string(start.size()) +
                       " of " + std::to_string(sizeBytes);
        found->thread = std::this_thread::get_id();
        return found;
    };
    const auto enough = [](std::string_view, std::int64_t) { return std::int64_t{200}; };
    files->Expect({first, second}, {100, 50, enough, find});
    AwaitEqual(held->reads, 6); // the first bytes, the others of the first, the last ones
    for (const auto &[path, want] :
         {std::pair(first, "a0a1 200 of 500"), std::pair(second, "b0b1 200 of 500")}) {
        SCOPED_TRACE(path);
        FileIdentity identity;
        const int handle = files->OpenToRead(path, identity);
        platform::ByteBuffer bytes;
        std::unique_ptr<platform::Digest> digest;
        ASSERT_TRUE(
            tests::WaitUntil([&] { return files->TakeStart(handle, bytes, digest) == 200; }));
        const auto *letters = dynamic_cast<const Letters *>(digest.get());
        ASSERT_NE(letters, nullptr);
        EXPECT_EQ(letters->start, want);
        EXPECT_EQ(letters->place, bytes.data()) << "what points into the bytes stays whole";
        EXPECT_NE(letters->thread, std::this_thread::get_id());
        files->Close(handle);
    }
    files->ExpectNothing();
    AwaitEqual(held->closes, held->opens);
}

TEST_F(ReadAheadTest, OneHelperStaysWhereThereIsAProcessorForIt)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 200; ++i)
        paths.push_back(File(std::to_string(i), 300));
    for (const unsigned processors : {1U, 2U}) {
        files = std::make_unique<ReadAheadFiles>(held, processors);
        EXPECT_EQ(files->PaysToExpect(), processors == 2);
        held->opens = held->closes = 0;
        for (int round = 0; round < 3; ++round) {
            files->Expect(paths, {100, 100, nullptr});
            for (const std::string &path : paths)
                EXPECT_EQ(Read(path, 0, 1), fs::path(path).filename().string().substr(0, 1));
        }
        // With one processor the times decide that; ExpectNothing ends it in any case.
        EXPECT_TRUE(files->PaysToExpect() || processors == 1);
        files->ExpectNothing();
        EXPECT_EQ(files->PaysToExpect(), processors == 2);
        EXPECT_GE(held->opens, 600);
        AwaitEqual(held->closes, held->opens);
    }
}

TEST_F(ReadAheadTest, OtherFilesAndAnotherOrderAreServedAsWell)
{
    const std::string a = File("a", 500), b = File("b", 500), c = File("c", 500);
    files->Expect({a, b, a}, {100, 100, nullptr});
    AwaitEqual(held->opens, 3);
    EXPECT_EQ(Read(c, 0, 2), "c0");
    EXPECT_EQ(Read(b, 0, 2), "b0"); // the first a is skipped
    EXPECT_EQ(Read(a, 0, 2), "a0");
    EXPECT_EQ(held->opens, 4);
    EXPECT_EQ(Read(a, 0, 2), "a0");
    AwaitEqual(held->closes, 5);
}

TEST_F(ReadAheadTest, OnlySoManyFilesAreHeld)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 300; ++i)
        paths.push_back(File(std::to_string(i), 500));
    files->Expect(paths, {100, 100, nullptr});
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(Read(paths[static_cast<std::size_t>(i)], 0, 1).substr(0, 1),
                  std::to_string(i).substr(0, 1));
        EXPECT_LE(held->opens - held->closes, 64 + 1);
    }
    AwaitEqual(held->closes, held->opens);
}

// The program's other files need handles too.
TEST_F(ReadAheadTest, AQuarterOfTheHandlesIsHeldAtMost)
{
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few = {80, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    std::vector<std::string> paths;
    for (int i = 0; i < 64; ++i)
        paths.push_back(File(std::to_string(i), 500));
    files->Expect(paths, {100, 100, nullptr});
    AwaitEqual(held->opens, 20);
    for (const std::string &path : paths) {
        EXPECT_EQ(Read(path, 0, 2).size(), 2U);
        EXPECT_LE(held->opens - held->closes, 20 + 1);
    }
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(ReadAheadTest, WithoutAHandleThoseOfTheHelpersAreGivenUp)
{
    files->Expect({File("a", 500)}, {100, 100, nullptr});
    AwaitEqual(held->opens, 1);
    held->failures = 1;
    EXPECT_EQ(Read(File("b", 500), 0, 3), "b0b");
    AwaitEqual(held->closes, 2);
    held->failures = 1; // no handle is open that could be closed instead
    EXPECT_EQ(Read(folder / "b", 0, 3), "error " + std::to_string(EMFILE));
}

TEST_F(ReadAheadTest, TheEndDoesNotWaitForAHelper)
{
    const std::string path = File("a", 500);
    held->Hold(kNever);
    files->Expect({path, File("b", 500)}, {100, 100, nullptr});
    held->AwaitRead();
    files->ExpectNothing();
    files->Expect({path}, {100, 100, nullptr});
    files.reset();
    EXPECT_EQ(held->closes, 0); // true only while the reads have not ended
    held->Release();
    AwaitEqual(held->closes, held->opens);
}

TEST_F(ReadAheadTest, TheEndOfTheProgramEndsAWait)
{
    const std::string path = File("a", 500);
    held->Hold(kNever);
    files->Expect({path}, {100, 100, nullptr});
    held->AwaitRead();
    platform::RequestEnd(SIGTERM);
    EXPECT_EQ(Read(path, 0, 1), "error " + std::to_string(EINTR));
    platform::RequestEnd(0);
    held->Release();
    AwaitEqual(held->closes, held->opens);
    EXPECT_EQ(Read(path, 0, 1), "a");
}

TEST_F(ReadAheadTest, SlowIsWhatHadToWaitUntilFilesComeFast)
{
    files = std::make_unique<ReadAheadFiles>(held, 1);
    const std::string path = File("a", 500);
    EXPECT_FALSE(files->PaysToExpect());
    held->Hold(kNever);
    std::thread later([&] {
        held->AwaitRead();
        std::this_thread::sleep_for(std::chrono::milliseconds(5)); // which is slow for one read
        held->Release();
    });
    EXPECT_EQ(Read(path, 0, 1), "a");
    later.join();
    EXPECT_TRUE(files->PaysToExpect());
    for (int round = 0; files->PaysToExpect() && round < 1000; ++round) {
        std::vector<std::string> paths(100, path);
        files->Expect(paths, {100, 100, nullptr});
        for (const std::string &each : paths)
            EXPECT_EQ(Read(each, 0, 1), "a");
    }
    files->ExpectNothing();
    EXPECT_FALSE(files->PaysToExpect());
}

} // namespace
