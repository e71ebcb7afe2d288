// What an edit keeps besides the song's bytes: owner, rights, attributes, names and links.
#include "metadata/tagwriter.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "tests/metadata/faultyedit.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

using tests::ReadFile;

class SongRights : public tests::FaultyEdit
{
};

TEST_F(SongRights, RightsOwnerAndAttributesStay)
{
    tests::WriteFile(m_path, kOld);
    ASSERT_EQ(setxattr(m_path.c_str(), "user.rating", "5 stars", 7, 0), 0);
    ASSERT_EQ(setxattr(m_path.c_str(), "user.long", std::string(2000, 'x').data(), 2000, 0), 0);
    ASSERT_TRUE(geteuid() != 0 || chown(m_path.c_str(), 1234, 4321) == 0);
    ASSERT_EQ(chmod(m_path.c_str(), 01604), 0);
    struct stat before, after;
    ASSERT_EQ(stat(m_path.c_str(), &before), 0);
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(EditAsItIs());
    ASSERT_EQ(stat((m_desk.program / "Backup/song.mp3").c_str(), &after), 0);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    ASSERT_EQ(stat(m_path.c_str(), &after), 0);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    char value[3000];
    EXPECT_EQ(getxattr(m_path.c_str(), "user.rating", value, sizeof value), 7);
    EXPECT_EQ(std::string(value, 7), "5 stars");
    EXPECT_EQ(getxattr(m_path.c_str(), "user.long", value, sizeof value), 2000);
}

// Another user may read and write what is made in the folder, but not this song.
TEST_F(SongRights, TheFolderGivesASongNoAccessList)
{
    tests::WriteFile(m_path, kOld);
    ASSERT_EQ(chmod(m_path.c_str(), 0640), 0);
    struct Entry {
        std::uint16_t tag, rights;
        std::uint32_t user;
    };
    const struct {
        std::uint32_t version = 2;
        Entry entries[5] = {{1, 7, ~0u}, {2, 7, 1234}, {4, 7, ~0u}, {16, 7, ~0u}, {32, 0, ~0u}};
    } list; // linux/posix_acl_xattr.h
    const int set =
        setxattr(m_desk.music.Path().c_str(), "system.posix_acl_default", &list, sizeof list, 0);
    if (set != 0 && errno == ENOTSUP)
        GTEST_SKIP() << "no access lists in the folder of the tests";
    ASSERT_EQ(set, 0);
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_EQ(getxattr(m_path.c_str(), "system.posix_acl_access", nullptr, 0), -1);
    EXPECT_EQ(errno, ENODATA);
    struct stat after;
    ASSERT_EQ(stat(m_path.c_str(), &after), 0);
    EXPECT_EQ(after.st_mode & 07777, 0640u);
}

TEST_F(SongRights, NamesOfAnyLength)
{
    shell::TheGlobals().BackUpFiles = true;
    for (std::size_t length : {100u, 243u, 244u, 245u, 250u, 251u}) {
        SCOPED_TRACE(length);
        std::string name; // of characters of two bytes, as far as they go
        while (name.size() + 6 <= length)
            name += "\xD0\x96";
        name.resize(length - 4, 'x');
        m_path = m_desk.music / (name + ".mp3");
        EXPECT_TRUE(Edit());
        EXPECT_TRUE(m_desk.boxes.empty());
        EXPECT_TRUE(ReadFile(m_path) == kNew);
        EXPECT_TRUE(ReadFile(m_desk.program / ("Backup/" + name + ".mp3")) == kOld);
        fs::remove(m_path);
    }
    m_path = m_desk.music / (std::string(248, 'x') + ".mp3"); // no room for ".bck"
    tests::WriteFile(m_path, kOld);
    EXPECT_TRUE(EditAsItIs());
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"File name too long"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
}

TEST_F(SongRights, ASymbolicLinkKeepsPointingAtTheSong)
{
    const std::string target = m_desk.program / "elsewhere/real.mp3";
    tests::WriteFile(target, kOld);
    fs::create_symlink(target, m_path);
    shell::TheGlobals().BackUpFiles = true;
    metadata::TheTagWriterHooks().releasePlayingFile = [&](const std::string &, std::int32_t &,
                                                           std::int32_t &) -> std::string {
        EXPECT_TRUE(fs::exists(target + ".bck")); // beside the song, wherever the link stands
        return {};
    };
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(fs::is_symlink(m_path));
    EXPECT_EQ(fs::read_symlink(m_path), target);
    EXPECT_TRUE(ReadFile(target) == kNew);
    EXPECT_EQ(Names(m_desk.program / "elsewhere"), std::vector<std::string>{"real.mp3"});
    EXPECT_TRUE(ReadFile(m_desk.program / "Backup/song.mp3") == kOld); // by the name it was given
}

TEST_F(SongRights, OfHardLinksOnlyTheEditedNameGetsTheNewVersion)
{
    tests::WriteFile(m_path, kOld);
    fs::create_hard_link(m_path, m_desk.program / "other.mp3");
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_TRUE(ReadFile(m_desk.program / "other.mp3") == kOld);
}

TEST_F(SongRights, AFolderThatCannotBeWrittenTo)
{
    tests::WriteFile(m_path, kOld);
    fs::permissions(m_desk.music.Path(), static_cast<fs::perms>(0555));
    fs::permissions(m_desk.program.Path(), fs::perms::all);
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    EXPECT_TRUE(EditAsItIs());
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Permission denied"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
}

TEST_F(SongRights, AnOwnerThatCannotBeKeptLeavesTheSong)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the system's own user can make a song of somebody else";
    tests::WriteFile(m_path, kOld);
    ASSERT_EQ(chown(m_path.c_str(), 1234, 4321), 0);
    fs::permissions(m_desk.music.Path(), fs::perms::all);
    ASSERT_EQ(seteuid(65534), 0);
    EXPECT_TRUE(EditAsItIs());
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Operation not permitted"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
}

} // namespace
