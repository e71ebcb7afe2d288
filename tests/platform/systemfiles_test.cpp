#include "platform/posix/disk/systemfiles.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

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

TEST_F(SystemFiles, AFolderThatIsMadeIsTheUsersAlone)
{
    EXPECT_EQ(files.MakeFolder(folder / "made"), 0);
    EXPECT_EQ(fs::status(folder / "made").permissions(), fs::perms::owner_all);
}

} // namespace
