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
#include <cstring>
#include <filesystem>
#include <iterator>

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

// Both kinds of list give `rights` to the user 1234. Layout: linux/posix_acl_xattr.h.
struct AccessList {
    struct Entry {
        std::uint16_t tag, rights;
        std::uint32_t user;
    };
    explicit AccessList(std::uint16_t rights)
        : entries{{1, 6, ~0u}, {2, rights, 1234}, {4, 4, ~0u}, {16, rights, ~0u}, {32, 0, ~0u}}
    {
    }
    // False where the file system has no such lists.
    [[nodiscard]] bool Set(const std::string &path, const char *kind) const
    {
        const bool isSet = setxattr(path.c_str(), kind, this, sizeof *this, 0) == 0;
        EXPECT_TRUE(isSet || errno == ENOTSUP) << path;
        return isSet;
    }

    std::uint32_t version = 2;
    Entry entries[5];
};

constexpr const char *kAccess = "system.posix_acl_access";
constexpr const char *kDefault = "system.posix_acl_default";

// Another user may read and write what is made in the folder, but not this song.
TEST_F(SongRights, TheFolderGivesASongNoAccessList)
{
    tests::WriteFile(m_path, kOld);
    ASSERT_EQ(chmod(m_path.c_str(), 0640), 0);
    if (!AccessList(6).Set(m_desk.music.Path(), kDefault))
        GTEST_SKIP() << "no access lists in the folder of the tests";
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_EQ(getxattr(m_path.c_str(), kAccess, nullptr, 0), -1);
    EXPECT_EQ(errno, ENODATA);
    struct stat after;
    ASSERT_EQ(stat(m_path.c_str(), &after), 0);
    EXPECT_EQ(after.st_mode & 07777, 0640u);
}

TEST_F(SongRights, TheAccessListOfASongStays)
{
    tests::WriteFile(m_path, kOld);
    const AccessList list(4);
    if (!list.Set(m_path, kAccess) || !AccessList(6).Set(m_desk.music.Path(), kDefault))
        GTEST_SKIP() << "no access lists in the folder of the tests";
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    for (const std::string &path : {m_path, m_desk.program / "Backup/song.mp3"}) {
        char found[sizeof list + 1];
        ASSERT_EQ(getxattr(path.c_str(), kAccess, found, sizeof found), std::ssize(found) - 1);
        EXPECT_EQ(std::memcmp(found, &list, sizeof list), 0);
    }
}

TEST_F(SongRights, NamesOfAnyLength)
{
    shell::TheGlobals().BackUpFiles = true;
    for (std::size_t length : {100u, 243u, 244u, 245u, 250u, 251u}) {
        SCOPED_TRACE(length);
        std::string name; // characters of two bytes, as many as fit
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
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": File name too long"});
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
        EXPECT_TRUE(fs::exists(target + ".bck")); // beside the song, wherever the link is
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
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Permission denied"});
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
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Operation not permitted"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
}

} // namespace
