#include "platform/disk/files.h"
#include "platform/disk/wholefiles.h"
#include "platform/posix/disk/descriptor.h"
#include "tests/support/testfolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>

namespace
{

namespace fs = std::filesystem;
using namespace platform;

TEST(ReadRegularFile, GivesTheFirstBytes)
{
    const tests::TestFolder folder;
    const std::string bytes(200'000, 'x');
    tests::WriteFile(folder / "a", bytes);
    EXPECT_EQ(ReadRegularFile(folder / "a", 1 << 20), bytes);
    EXPECT_EQ(ReadRegularFile(folder / "a", 5), "xxxxx");
    EXPECT_EQ(ReadRegularFile(folder / "a", 0), "");
    EXPECT_EQ(ReadRegularFile(folder.Path(), 5), std::nullopt);
    EXPECT_EQ(ReadRegularFile(folder / "b", 5), std::nullopt);
    EXPECT_EQ(errno, ENOENT);
}

TEST(ReplaceFile, AFailedWriteLeavesTheOldFile)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "a", "old");
    const pid_t child = fork(); // a limit on file sizes in place of a full disk
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(ReplaceFile(folder / "a", std::string(5000, 'x')) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(tests::ReadFile(folder / "a"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

// The file at the end of the link is written, whether it exists or not; the link stays.
TEST(ReplaceFile, FollowsALinkAlsoToNothing)
{
    for (const bool exists : {true, false})
        for (const bool isRelative : {true, false}) {
            SCOPED_TRACE(std::string(exists ? "file " : "nothing ") + (isRelative ? "rel" : "abs"));
            const tests::TestFolder folder;
            fs::create_directory(folder / "far");
            if (exists)
                tests::WriteFile(folder / "far/file", "old");
            fs::create_symlink(isRelative ? "far/second" : folder / "far/second", folder / "first");
            fs::create_symlink(isRelative ? "file" : folder / "far/file", folder / "far/second");
            EXPECT_TRUE(ReplaceFile(folder / "first", "new"));
            EXPECT_TRUE(fs::is_symlink(folder / "first") && fs::is_symlink(folder / "far/second"));
            EXPECT_EQ(fs::symlink_status(folder / "far/file").type(), fs::file_type::regular);
            EXPECT_EQ(tests::ReadFile(folder / "far/file"), "new");
            EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2);
            EXPECT_EQ(std::distance(fs::directory_iterator(folder / "far"), {}), 2);
        }
}

TEST(ReplaceFile, ALinkThatCannotBeFollowedStays)
{
    const tests::TestFolder folder;
    fs::create_symlink("circle", folder / "circle");
    EXPECT_FALSE(ReplaceFile(folder / "circle", "new"));
    EXPECT_EQ(errno, ELOOP);
    fs::create_symlink("absent/file", folder / "away");
    EXPECT_FALSE(ReplaceFile(folder / "away", "new"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(fs::is_symlink(folder / "circle") && fs::is_symlink(folder / "away"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2);
}

// What a kill leaves is found by its name, whichever of the procedures has made it.
TEST(AbandonedFiles, AreRemovedWhenTheyAreOurOwnAndOld)
{
    const tests::TestFolder folder;
    std::string left;
    platform::Files &files = platform::SystemFiles();
    files.Close(files.CreateBeside(folder / "KnownSongs.dat", left));
    const std::string ending = left.substr(left.size() - 15);
    const std::string kept[] = {"a.backup",
                                "a.XXXXXX",
                                "a.quenlin",
                                "a.quenlin-",
                                ending,
                                "a.quenlin-abc",
                                "a.quenlin-abcdefg",
                                "a.quenlin-a.b-cd",
                                "a.Quenlin-abcdef",
                                "a" + ending + ".txt"};
    for (const std::string &name : kept)
        tests::WriteFile(folder / name, "user's");
    tests::WriteFile(folder / "young.quenlin-abc123", "being written");
    fs::create_directory(folder / "folder.quenlin-abc123");
    fs::create_symlink("a.backup", folder / "link.quenlin-abc123");
    const auto agePast = [&](std::chrono::hours age) {
        const timespec then{time(nullptr) - std::chrono::seconds(age).count(), 0};
        const timespec times[] = {then, then};
        for (const auto &entry : fs::directory_iterator(folder.Path())) {
            if (entry.path().stem() == "young")
                continue;
            EXPECT_EQ(utimensat(AT_FDCWD, entry.path().c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
        }
    };
    agePast(std::chrono::hours(23));
    RemoveAbandonedFiles(folder.Path());
    EXPECT_TRUE(fs::exists(left));
    agePast(std::chrono::hours(25));
    RemoveAbandonedFiles(folder.Path());
    EXPECT_FALSE(fs::exists(left));
    for (const std::string &name : kept)
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    EXPECT_TRUE(fs::exists(folder / "young.quenlin-abc123"));
    EXPECT_TRUE(fs::exists(folder / "folder.quenlin-abc123"));
    EXPECT_TRUE(fs::is_symlink(folder / "link.quenlin-abc123"));
    RemoveAbandonedFiles(folder / "absent");
}

TEST(AbandonedFiles, AreRecognizedWhateverWasKilled)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "file", "old");
    const pid_t child = fork();
    if (child == 0) { // a limit on file sizes ends the process in the middle of the write
        const rlimit none{0, 0}, limit{1000, 1000};
        setrlimit(RLIMIT_CORE, &none);
        signal(SIGXFSZ, SIG_DFL);
        setrlimit(RLIMIT_FSIZE, &limit);
        ReplaceFile(folder / "file", std::string(5000, 'x'));
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ);
    ASSERT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2);
    for (const auto &entry : fs::directory_iterator(folder.Path()))
        fs::last_write_time(entry.path(),
                            fs::file_time_type::clock::now() - std::chrono::hours(25));
    RemoveAbandonedFiles(folder.Path());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
    EXPECT_EQ(tests::ReadFile(folder / "file"), "old");
}

TEST(AppendToFile, MakesAndAppends)
{
    const tests::TestFolder folder;
    EXPECT_TRUE(AppendToFile(folder / "a", "one\r\n"));
    EXPECT_TRUE(AppendToFile(folder / "a", std::string("\0two", 4)));
    EXPECT_EQ(tests::ReadFile(folder / "a"), std::string("one\r\n\0two", 9));
    EXPECT_FALSE(AppendToFile(folder / "absent/a", "x"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(AppendToFile(folder.Path(), "x"));
    EXPECT_EQ(errno, EISDIR);
}

TEST(AppendToFile, WhatIsNoFileIsRefusedAtOnce)
{
    const tests::TestFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(AppendToFile(folder / "pipe", "x"));
    EXPECT_FALSE(static_cast<bool>(Appender(folder / "pipe")));
    const posix::Descriptor reader(open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK));
    EXPECT_FALSE(AppendToFile(folder / "pipe", "x"));
    EXPECT_EQ(errno, EINVAL);
    char byte = 0;
    EXPECT_EQ(read(reader.Get(), &byte, 1), 0);
    EXPECT_FALSE(AppendToFile("/dev/null", "x"));
    EXPECT_EQ(errno, EINVAL);
    EXPECT_FALSE(static_cast<bool>(Appender("/dev/null")));
}

TEST(OwnFiles, AreTheUsersAlone)
{
    const tests::TestFolder folder;
    const mode_t before = umask(0);
    EXPECT_TRUE(AppendToFile(folder / "appended", "x"));
    EXPECT_TRUE(static_cast<bool>(Appender(folder / "report")));
    EXPECT_TRUE(MakeFolders(folder / "one/two"));
    umask(before);
    const auto mode = [&](const char *name) {
        struct stat status {
        };
        EXPECT_EQ(stat((folder / name).c_str(), &status), 0);
        return status.st_mode & 07777;
    };
    EXPECT_EQ(mode("appended"), 0600u);
    EXPECT_EQ(mode("report"), 0600u);
    EXPECT_EQ(mode("one"), 0700u);
    EXPECT_EQ(mode("one/two"), 0700u);
}

TEST(Appender, BeginsAfreshAndMakesADeletedFileAgain)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "a", "old");
    Appender file(folder / "a");
    ASSERT_TRUE(file);
    EXPECT_EQ(tests::ReadFile(folder / "a"), "");
    EXPECT_TRUE(file.Append("one"));
    EXPECT_TRUE(file.Append("two"));
    EXPECT_EQ(tests::ReadFile(folder / "a"), "onetwo");
    std::filesystem::remove(folder / "a");
    EXPECT_TRUE(file.Append("three"));
    EXPECT_EQ(tests::ReadFile(folder / "a"), "three");
    Appender none(folder / "absent/a");
    EXPECT_FALSE(none);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(none.Append("x"));
}

TEST(MakeFolders, MakesAllFoldersOfThePath)
{
    const tests::TestFolder folder;
    EXPECT_TRUE(MakeFolders(folder / "a/b/c"));
    EXPECT_TRUE(MakeFolders(folder / "a/b/c"));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "a/b/c"));
    tests::WriteFile(folder / "f", "");
    EXPECT_FALSE(MakeFolders(folder / "f"));
    EXPECT_FALSE(MakeFolders(folder / "f/g"));
}

} // namespace
