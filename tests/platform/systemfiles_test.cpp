#include "platform/posix/disk/systemfiles.h"
#include "tests/support/testfolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <cerrno>
#include <filesystem>
#include <string_view>

namespace fs = std::filesystem;

namespace
{

using platform::FileIdentity;

class SystemFiles : public testing::Test
{
protected:
    tests::TestFolder folder;
    platform::posix::SystemFilesPort files;
};

TEST_F(SystemFiles, ANewNameIsGivenOnlyWhereNoneIs)
{
    tests::WriteFile(folder / "a", "a");
    tests::WriteFile(folder / "b", "b");
    EXPECT_EQ(files.RenameNew(folder / "a", folder / "b"), EEXIST);
    EXPECT_EQ(tests::ReadFile(folder / "a"), "a");
    EXPECT_EQ(tests::ReadFile(folder / "b"), "b");
    EXPECT_EQ(files.RenameNew(folder / "a", folder / "c"), 0);
    EXPECT_EQ(tests::ReadFile(folder / "c"), "a");
    EXPECT_FALSE(fs::exists(folder / "a"));
    EXPECT_EQ(files.RenameNew(folder / "a", folder / "d"), ENOENT);
    fs::create_symlink(folder / "nowhere", folder / "link");
    EXPECT_EQ(files.RenameNew(folder / "b", folder / "link"), EEXIST);
}

TEST_F(SystemFiles, ALockIsOneHandles)
{
    tests::WriteFile(folder / "a", "a");
    FileIdentity identity;
    const int first = files.OpenToRead(folder / "a", identity);
    const int second = files.OpenToRead(folder / "a", identity);
    EXPECT_EQ(files.TryLock(first), 0);
    EXPECT_EQ(files.TryLock(first), 0);
    EXPECT_EQ(files.TryLock(second), EWOULDBLOCK);
    files.Close(first);
    EXPECT_EQ(files.TryLock(second), 0);
    files.Close(second);
}

TEST_F(SystemFiles, AFileToBeLockedIsTheUsersAndKeepsItsContent)
{
    const mode_t before = umask(0);
    const int first = files.OpenLockFile(folder / "lock");
    umask(before);
    ASSERT_GE(first, 0);
    EXPECT_EQ(fs::status(folder / "lock").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_NE(fcntl(first, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(files.TryLock(first), 0);
    const int second = files.OpenLockFile(folder / "lock");
    EXPECT_EQ(files.TryLock(second), EWOULDBLOCK);
    files.Close(first);
    EXPECT_EQ(files.TryLock(second), 0);
    files.Close(second);
    tests::WriteFile(folder / "full", "x");
    files.Close(files.OpenLockFile(folder / "full"));
    EXPECT_EQ(tests::ReadFile(folder / "full"), "x");
    EXPECT_EQ(files.OpenLockFile(folder / "absent/lock"), -ENOENT);
}

TEST_F(SystemFiles, AScratchFileHasNoNameAndIsTheUsersAlone)
{
    const mode_t before = umask(0);
    const int file = files.CreateScratch(folder.Path());
    umask(before);
    ASSERT_GE(file, 0);
    EXPECT_TRUE(fs::is_empty(folder.Path()));
    struct stat status = {};
    ASSERT_EQ(fstat(file, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
    EXPECT_EQ(status.st_nlink, 0u);
    EXPECT_NE(fcntl(file, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(files.Write(file, "abcdef", 6), 6);
    char bytes[4] = {};
    EXPECT_EQ(files.ReadAt(file, 2, bytes, 4, true), 4);
    EXPECT_EQ(std::string_view(bytes, 4), "cdef");
    EXPECT_EQ(files.Write(file, "gh", 2), 2); // at the end: reading has not moved it
    EXPECT_EQ(files.ReadAt(file, 5, bytes, 4, true), 3);
    EXPECT_EQ(std::string_view(bytes, 3), "fgh");
    files.Close(file);
    EXPECT_EQ(files.CreateScratch(folder / "absent"), -ENOENT);
}

// Of the file systems that every machine has.
TEST_F(SystemFiles, TimesOfChangeAreKnownByTheFileSystem)
{
    FileIdentity file;
    ASSERT_EQ(files.Identify("/proc/self/status", file), 0);
    EXPECT_FALSE(files.HasChangeTimes(file));
    struct statfs system = {};
    if (statfs("/dev/shm", &system) == 0 && system.f_type == TMPFS_MAGIC) {
        ASSERT_EQ(files.Identify("/dev/shm", file), 0);
        EXPECT_TRUE(files.HasChangeTimes(file));
        file.path = "/proc/self/status";
        EXPECT_TRUE(files.HasChangeTimes(file)) << "the answer for a device is kept";
    }
    ASSERT_EQ(files.Identify("/proc/self/status", file), 0);
    file.device += 1;
    EXPECT_FALSE(files.HasChangeTimes(file)) << "another device than that of the file";
}

TEST_F(SystemFiles, AFolderThatIsMadeIsTheUsersAlone)
{
    EXPECT_EQ(files.MakeFolder(folder / "made"), 0);
    EXPECT_EQ(fs::status(folder / "made").permissions(), fs::perms::owner_all);
}

} // namespace
