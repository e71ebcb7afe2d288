// Every call of an edit that changes something fails once, and the process is killed in every one:
// a whole copy of the song is there, and whatever failed is told.
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "tests/metadata/faultyfiles.h"
#include "tests/metadata/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>

namespace fs = std::filesystem;

namespace
{

using tests::Frame3;
using tests::Pass;
using tests::ReadFile;
using tests::Tag;
using tests::Tag1;

const std::string kAudio = tests::Header128() + std::string(10'000, 'a');
const std::string kOld = Tag(3, Frame3("TIT2", "Old") + Frame3("PRIV", std::string(2000, 'k'))) +
                         kAudio + Tag1("One", "", "", "", "", 3, 17);
const std::string kNew = Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(255)") +
                                    Frame3("TRCK", "0") + Frame3("PRIV", std::string(2000, 'k'))) +
                         kAudio + Tag1("One", "", "", "", "", 3, 17);

class TagFaults : public testing::Test
{
protected:
    void SetUp() override { platform::TheMachine().files = &m_files; }

    // Edits the title of a fresh song in a fresh folder. The result of SaveTag.
    bool Edit()
    {
        fs::remove_all(m_path);
        fs::remove_all(m_path + ".bck");
        fs::remove_all(m_desk.program / "Backup");
        tests::WriteFile(m_path, kOld);
        return EditAsItIs();
    }

    bool EditAsItIs()
    {
        m_files.calls = 0;
        m_files.isDead = false;
        m_desk.boxes.clear();
        Pass old = tests::ReadPass(m_path);
        Pass now = old;
        now.v2.Title = "New";
        return metadata::SaveTag(now.v1, now.v2, old.v1, old.v2, m_path, true, true, nullptr);
    }

    std::vector<std::string> Names(const std::string &folder) const
    {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        return names;
    }

    tests::SongDesk m_desk;
    tests::FaultyFiles m_files;
    std::string m_path = m_desk.music / "song.mp3";
};

bool IsWhole(const std::string &path)
{
    if (!fs::exists(path))
        return false;
    const std::string bytes = ReadFile(path);
    return bytes == kOld || bytes == kNew;
}

TEST_F(TagFaults, WithoutAFault)
{
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_GT(m_files.calls, 12);
    EXPECT_TRUE(m_desk.boxes.empty());
}

TEST_F(TagFaults, TheNewVersionIsOnTheDiskBeforeTheOldOneGoes)
{
    EXPECT_TRUE(Edit());
    EXPECT_EQ(m_files.log, "fbrd");
}

TEST_F(TagFaults, KilledInEveryCall)
{
    for (const bool backup : {false, true}) {
        shell::TheGlobals().BackUpFiles = backup;
        m_files.faultyCall = 0;
        EXPECT_TRUE(Edit());
        const int calls = m_files.calls;
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(call);
            m_files.faultyCall = call;
            m_files.reason = 0;
            Edit();
            ASSERT_TRUE(m_files.isDead);
            EXPECT_TRUE(IsWhole(m_path) || IsWhole(m_path + ".bck"));
            EXPECT_TRUE(fs::exists(m_path)); // there is no moment without a song
            EXPECT_TRUE(IsWhole(m_path));
            EXPECT_TRUE(!fs::exists(m_path + ".bck") || IsWhole(m_path + ".bck"));
            const std::string saved = m_desk.program / "Backup/song.mp3";
            EXPECT_TRUE(!fs::exists(saved) || ReadFile(saved) == kOld);
            m_files.faultyCall = 0; // the next start finds a song that can be edited
            m_files.isDead = false;
            const std::string before = ReadFile(m_path);
            EXPECT_EQ(EditAsItIs(), true);
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            EXPECT_TRUE(ReadFile(m_path).ends_with(kAudio + Tag1("One", "", "", "", "", 3, 17)));
        }
    }
}

TEST_F(TagFaults, FailingInEveryCall)
{
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(Edit());
    const int calls = m_files.calls;
    int untouched = 0;
    for (const int reason : {ENOSPC, EIO, EDQUOT, EROFS, EACCES})
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(std::to_string(call) + " " + std::to_string(reason));
            m_files.faultyCall = call;
            m_files.reason = reason;
            EXPECT_TRUE(Edit()); // though a step failed
            EXPECT_TRUE(IsWhole(m_path));
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
            EXPECT_LE(
                fs::exists(m_desk.program / "Backup") ? Names(m_desk.program / "Backup").size() : 0,
                1u);
            untouched += ReadFile(m_path) == kOld;
            EXPECT_TRUE(!m_desk.boxes.empty() || ReadFile(m_path) == kNew);
            for (const std::string &box : m_desk.boxes)
                EXPECT_EQ(box, std::generic_category().message(reason));
        }
    EXPECT_GT(untouched, 5 * 4);
}

TEST_F(TagFaults, FullDiskTellsItsWordsAndLeavesTheSong)
{
    m_files.createReason = ENOSPC;
    int updates = 0;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const metadata::ID3v2Tag &,
                                                        const std::string &) { ++updates; };
    EXPECT_TRUE(Edit());
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"No space left on device"});
    EXPECT_EQ(updates, 1); // the following statements run as told
    EXPECT_TRUE(ReadFile(m_path) == kOld);
}

TEST_F(TagFaults, AStaleCopyIsNeverTakenForTheNewOne)
{
    m_files.createReason = EACCES;
    tests::WriteFile(m_path, kOld);
    tests::WriteFile(m_path + ".bck", "stale");
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    m_files.createReason = 0;
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_FALSE(fs::exists(m_path + ".bck"));
}

TEST_F(TagFaults, WhereTheSystemCannotCopyByItselfTheProgramDoes)
{
    for (const int reason : {EXDEV, EINVAL, EOPNOTSUPP})
        for (int call = 1; call <= 8; ++call) {
            m_files.faultyCall = call;
            m_files.reason = reason;
            Edit();
            EXPECT_TRUE(IsWhole(m_path));
        }
}

TEST_F(TagFaults, TheFolderOfBackupsCannotBeMade)
{
    shell::TheGlobals().BackUpFiles = true;
    tests::WriteFile(m_desk.program / "Backup", "a file");
    tests::WriteFile(m_path, kOld);
    EXPECT_TRUE(EditAsItIs());
    ASSERT_EQ(m_desk.boxes.size(), 1u);
    EXPECT_TRUE(ReadFile(m_path) == kNew);
}

// Another process makes the folder between the failed statement and the one that makes it.
TEST_F(TagFaults, TheFolderOfBackupsIsMadeByTwo)
{
    struct : tests::FaultyFiles {
        int MakeFolder(const std::string &path) override
        {
            EXPECT_EQ(FaultyFiles::MakeFolder(path), 0);
            return FaultyFiles::MakeFolder(path);
        }
    } files;
    platform::TheMachine().files = &files;
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(m_desk.boxes.empty());
    EXPECT_TRUE(ReadFile(m_desk.program / "Backup/song.mp3") == kOld);
    EXPECT_TRUE(ReadFile(m_path) == kNew);
}

TEST_F(TagFaults, TheBackupIsWaitedForUntilItCanBeOpened)
{
    struct : tests::FaultyFiles {
        int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
        {
            const bool isBackup = path.find("/Backup/") != std::string::npos;
            return isBackup && --busy > 0 ? -EBUSY : FaultyFiles::OpenToRead(path, identity);
        }
        int busy = 40;
    } files;
    platform::TheMachine().files = &files;
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(Edit());
    EXPECT_EQ(files.busy, 0);
    EXPECT_TRUE(ReadFile(m_path) == kNew);
}

// --- a song that another program holds -------------------------------------------------------

// The file system does not let the song be replaced for the first `busy` times.
struct HeldSong : tests::FaultyFiles {
    int Rename(const std::string &from, const std::string &to) override
    {
        if (to.ends_with(".mp3") && busy-- > 0) {
            if (onBusy)
                onBusy();
            return held;
        }
        return FaultyFiles::Rename(from, to);
    }
    int busy = 0;
    int held = EBUSY;
    std::function<void()> onBusy;
};

TEST_F(TagFaults, AHeldSongIsWaitedForUntilTheOtherProgramLetsGo)
{
    HeldSong files;
    platform::TheMachine().files = &files;
    for (const int held : {EBUSY, ETXTBSY}) {
        files.held = held;
        files.busy = 10'000;
        const int yieldsBefore = m_desk.yields;
        EXPECT_TRUE(Edit());
        EXPECT_EQ(files.busy, -1);
        EXPECT_GT(m_desk.yields - yieldsBefore, 10'000);
        EXPECT_TRUE(m_desk.boxes.empty());
        EXPECT_TRUE(ReadFile(m_path) == kNew);
        EXPECT_FALSE(fs::exists(m_path + ".bck"));
    }
}

TEST_F(TagFaults, AHeldSongThatChangesIsLeft)
{
    HeldSong files;
    platform::TheMachine().files = &files;
    files.busy = 100;
    files.onBusy = [&] {
        if (files.busy == 50)
            tests::WriteFile(m_path, "theirs");
    };
    EXPECT_FALSE(Edit());
    EXPECT_EQ(files.busy, 50);
    ASSERT_EQ(m_desk.boxes.size(), 1u);
    EXPECT_NE(m_desk.boxes[0].find("was changed by another program"), std::string::npos);
    EXPECT_EQ(ReadFile(m_path), "theirs");
    EXPECT_FALSE(fs::exists(m_path + ".bck"));
}

TEST_F(TagFaults, TheEndOfTheProgramIsNotKeptWaiting)
{
    HeldSong files;
    platform::TheMachine().files = &files;
    files.busy = 10'000;
    files.onBusy = [&] {
        if (files.busy == 9'000)
            platform::RequestEnd(SIGTERM);
    };
    EXPECT_TRUE(Edit());
    platform::RequestEnd(0);
    EXPECT_EQ(files.busy, 9'000);
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Device or resource busy"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    EXPECT_FALSE(fs::exists(m_path + ".bck"));
}

TEST_F(TagFaults, TheCopyStaysWhereItIsAllThatIsLeft)
{
    HeldSong files;
    platform::TheMachine().files = &files;
    files.busy = 1;
    files.held = EIO;
    files.onBusy = [&] { fs::remove(m_path); };
    EXPECT_TRUE(Edit());
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Input/output error"});
    EXPECT_FALSE(fs::exists(m_path));
    EXPECT_TRUE(ReadFile(m_path + ".bck") == kNew);
}

// --- owner, rights, attributes, links --------------------------------------------------------

TEST_F(TagFaults, RightsOwnerAndAttributesStay)
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
TEST_F(TagFaults, TheFolderGivesASongNoAccessList)
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

TEST_F(TagFaults, NamesOfAnyLength)
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

TEST_F(TagFaults, ASymbolicLinkKeepsPointingAtTheSong)
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

TEST_F(TagFaults, OfHardLinksOnlyTheEditedNameGetsTheNewVersion)
{
    tests::WriteFile(m_path, kOld);
    fs::create_hard_link(m_path, m_desk.program / "other.mp3");
    EXPECT_TRUE(EditAsItIs());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_TRUE(ReadFile(m_desk.program / "other.mp3") == kOld);
}

TEST_F(TagFaults, AFolderThatCannotBeWrittenTo)
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

TEST_F(TagFaults, AnOwnerThatCannotBeKeptLeavesTheSong)
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
