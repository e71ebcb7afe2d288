#include "platform/posix/disk/systemfiles.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <cerrno>
#include <filesystem>

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
