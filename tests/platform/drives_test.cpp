#include "platform/posix/disk/mountdrives.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

namespace
{

using platform::DriveType;
using platform::posix::MountDrives;
using platform::posix::ParseMounts;

TEST(ParseMounts, Table)
{
    const auto mounts = ParseMounts(
        "36 35 98:0 /mnt1 /mnt\\0402 rw,noatime master:1 - ext3 /dev/root rw,errors=continue\n"
        "37 35 0:31 / /media/a\\134b rw - nfs4 server:/a\\040b rw\n"
        "damaged line\n"
        "1 2 3 4 5 - x\n"
        "\n"
        "38 35 8:1 / /x rw shared:1 master:2 - ext4 /dev/sda1 rw");
    ASSERT_EQ(mounts.size(), 3u);
    EXPECT_EQ(mounts[0].device, "98:0");
    EXPECT_EQ(mounts[0].point, "/mnt 2");
    EXPECT_EQ(mounts[0].type, "ext3");
    EXPECT_EQ(mounts[0].source, "/dev/root");
    EXPECT_EQ(mounts[1].point, "/media/a\\b");
    EXPECT_EQ(mounts[1].source, "server:/a b");
    EXPECT_EQ(mounts[2].point, "/x");
}

// A machine made by the test: its mount points are folders of the test.
class Machine : public ::testing::Test
{
protected:
    Machine()
    {
        for (const char *name : {"stick", "stick/inner", "cd", "net", "mem", "disk"})
            std::filesystem::create_directories(folder / name);
        root = std::filesystem::canonical(folder.Path()).string();
        AddMount("8:0", "/", "ext4", "/dev/none0");
        AddMount("8:17", root + "/stick", "vfat", root + "/dev1");
        AddMount("11:0", root + "/cd", "udf", root + "/dev2");
        AddMount("0:40", root + "/net", "nfs4", "server:/x");
        AddMount("0:41", root + "/mem", "tmpfs", "tmpfs");
        AddMount("8:2", root + "/disk", "ext4", "/dev/none2");
        places.mountInfo = folder / "mountinfo";
        places.blockDevices = folder / "block";
        places.labels = folder / "labels";
        tests::WriteFile(folder / "block/sdb/removable", "1\n");
        tests::WriteFile(folder / "block/sdb/sdb1/partition", "1\n");
        std::filesystem::create_symlink("sdb/sdb1", folder / "block/8:17");
        tests::WriteFile(folder / "block/11:0/device/type", "5\n");
        tests::WriteFile(folder / "block/11:0/removable", "1\n");
        tests::WriteFile(folder / "block/8:2/removable", "0\n");
        tests::WriteFile(folder / "dev1", "");
        tests::WriteFile(folder / "dev2", "");
        std::filesystem::create_directories(folder / "labels");
        std::filesystem::create_symlink("../dev1", folder / "labels/MY\\x20STICK");
        std::filesystem::create_symlink("../dev2", folder / "labels/Best_Of");
    }

    void AddMount(const std::string &device, const std::string &point, const std::string &type,
                  const std::string &source)
    {
        table += "1 1 " + device + " / " + point + " rw - " + type + " " + source + " rw\n";
        tests::WriteFile(folder / "mountinfo", table);
    }

    tests::TestFolder folder{"/tmp"}; // not below /dev, whose paths have their own meaning
    std::string root, table;
    MountDrives::Places places;
};

TEST_F(Machine, TheDriveIsTheNearestMountPoint)
{
    MountDrives drives(places);
    EXPECT_EQ(drives.DriveOf(root + "/stick/inner/a.mp3"), root + "/stick");
    EXPECT_EQ(drives.DriveOf(root + "/stick"), root + "/stick");
    // Only the beginning of the name is the same.
    EXPECT_EQ(drives.DriveOf(root + "/stick2/a.mp3"), "/");
    EXPECT_EQ(drives.DriveOf(root + "/stick/absent/b/c.mp3"), root + "/stick");
    EXPECT_EQ(drives.DriveOf("/"), "/");
    EXPECT_EQ(drives.DriveOf(""), "/");
    EXPECT_EQ(drives.DriveOf("no separator"), "/");
    std::filesystem::create_directory_symlink(root + "/stick", folder / "link");
    EXPECT_EQ(drives.DriveOf(root + "/link/a.mp3"), root + "/stick");
}

TEST_F(Machine, TheTypeFollowsFileSystemAndDevice)
{
    MountDrives drives(places);
    EXPECT_EQ(drives.TypeOf(root + "/stick"),
              DriveType::Removable); // its disk has the removable flag
    EXPECT_EQ(drives.TypeOf(root + "/cd"), DriveType::CdRom);
    EXPECT_EQ(drives.TypeOf(root + "/net"), DriveType::Remote);
    EXPECT_EQ(drives.TypeOf(root + "/mem"), DriveType::RamDisk);
    EXPECT_EQ(drives.TypeOf(root + "/disk"), DriveType::Fixed);
    EXPECT_EQ(drives.TypeOf("/"), DriveType::Fixed);
    EXPECT_EQ(drives.TypeOf(root + "/stick/inner"), DriveType::NoRoot);
}

TEST_F(Machine, TheLabelIsThatOfTheDevice)
{
    MountDrives drives(places);
    EXPECT_EQ(drives.LabelOf(root + "/stick"), "MY STICK");
    EXPECT_EQ(drives.LabelOf(root + "/cd"), "Best_Of");
    EXPECT_EQ(drives.LabelOf(root + "/net"), "");
    EXPECT_EQ(drives.LabelOf("/nowhere"), "");
}

TEST_F(Machine, AMediumThatIsNotMountedIsMissing)
{
    places.userMedia = {folder / "media"};
    places.media = {folder / "mnt"};
    for (const char *song :
         {"media/me/plain.mp3", "media/me/IN/a/song.mp3", "mnt/disk/song.mp3", "music/song.mp3"})
        tests::WriteFile(folder / song, "");
    std::filesystem::create_directories(folder / "mnt/empty");
    AddMount("8:1", "/", "ext4", "/dev/sda1");
    AddMount("8:2", folder / "media/me/IN", "vfat", "/dev/sdb1");
    MountDrives drives(places);
    const struct {
        const char *name, *path;
        bool missing;
    } cases[] = {
        {"a stick that is not in", "media/me/OUT/a/song.mp3", true},
        {"a user without any", "media/you/OUT/song.mp3", true},
        {"a folder for a mount, with nothing in it", "mnt/empty/song.mp3", true},
        {"no folder for it", "mnt/none/song.mp3", true},
        {"a stick that is in", "media/me/IN/a/song.mp3", false},
        {"a song that is gone from a stick that is in", "media/me/IN/a/gone.mp3", false},
        {"a plain file among media", "media/me/plain.mp3", false},
        {"a plain file that is gone", "media/me/gone.mp3", false},
        {"a folder with songs of its own", "mnt/disk/gone.mp3", false},
        {"elsewhere", "music/gone/song.mp3", false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(drives.IsMediumMissing(folder / c.path), c.missing) << c.name;
}

TEST_F(Machine, TheLastMountOnAPointCounts)
{
    AddMount("0:50", root + "/disk", "nfs", "server:/y");
    MountDrives drives(places);
    EXPECT_EQ(drives.TypeOf(root + "/disk"), DriveType::Remote);
}

TEST(MountDrives, AMachineWithoutInformationIsUnknown)
{
    MountDrives drives({"/nonexistent/a", "/nonexistent/b", "/nonexistent/c"});
    EXPECT_EQ(drives.DriveOf("/tmp/a"), "/");
    EXPECT_EQ(drives.TypeOf("/"), DriveType::Unknown);
    EXPECT_EQ(drives.LabelOf("/"), "");
}

TEST(MountDrives, TheRealMachineAnswers)
{
    MountDrives drives;
    EXPECT_EQ(drives.DriveOf("/proc/self/status"), "/proc");
    EXPECT_NE(drives.TypeOf("/"), DriveType::Unknown);
    EXPECT_FALSE(drives.SerialOf("/").empty());
    EXPECT_EQ(drives.SerialOf("/nonexistent"), "");
}

TEST_F(Machine, RootsAreWhatAUserKnows)
{
    std::filesystem::create_directories(folder / "home/ana");
    std::filesystem::create_directories(folder / "fuse");
    tests::WriteFile(folder / "hosts", "a file");
    AddMount("8:3", root + "/hosts", "ext4", "/dev/none3"); // a mounted file
    AddMount("0:5", "/proc", "proc", "proc");
    AddMount("8:4", "/boot/efi", "vfat", "/dev/none4");
    AddMount("7:1", root + "/snap", "squashfs", "/dev/loop1");
    AddMount("0:50", root + "/fuse", "fuse.sshfs2", "ana@server:");
    AddMount("0:51", "/run/user/1/doc", "fuse.portal", "portal");
    AddMount("0:52", "/run/media/ana/gone", "fuseblk", "/dev/none5");
    AddMount("8:17", root + "/stick", "vfat", root + "/dev1"); // a second time
    places.home = root + "/home/ana";
    std::erase(places.machineFolders, "/tmp"); // where the test's folders are
    MountDrives drives(places);
    EXPECT_EQ(drives.Roots(),
              (std::vector<std::string>{"/", root + "/home/ana", "/run/media/ana/gone",
                                        root + "/disk", root + "/fuse", root + "/net"}));
    EXPECT_EQ(drives.LabelOf(root + "/home/ana"), "ana");
    EXPECT_EQ(drives.TypeOf(root + "/home/ana"), DriveType::NoRoot);
    places.home = root + "/absent";
    MountDrives homeless(places);
    EXPECT_EQ(homeless.Roots()[1], "/run/media/ana/gone");
}

TEST(HomeFolder, HasNoSeparatorAtItsEnd)
{
    const std::string before = platform::Environment("HOME");
    setenv("HOME", "/home/ana//", 1);
    EXPECT_EQ(platform::HomeFolder(), "/home/ana");
    setenv("HOME", before.c_str(), 1);
}

} // namespace
