// Every call of an edit that changes something fails once, and the process is killed in every one:
// a complete copy of the song exists, and each failure is reported.
#include "metadata/tagwriter.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "tests/metadata/faultyedit.h"
#include "tests/support/recordedfiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>

namespace fs = std::filesystem;

namespace
{

using tests::ReadFile;

class TagFaults : public tests::FaultyEdit
{
protected:
    [[nodiscard]] bool IsWhole(const std::string &path) const
    {
        if (!fs::exists(path))
            return false;
        const std::string bytes = ReadFile(path);
        return bytes == kOld || bytes == kNew;
    }
};

TEST_F(TagFaults, WithoutAFault)
{
    shell::TheGlobals().BackUpFiles = true;
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(ReadFile(m_path) == kNew);
    EXPECT_GT(m_files.calls, 12);
    EXPECT_TRUE(m_desk.boxes.empty());
}

TEST_F(TagFaults, TheNewVersionIsOnTheDiskBeforeTheOldOneIsDeleted)
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
            // There is no moment without a song.
            const bool isNew = HasNamed(m_path);
            EXPECT_TRUE(ReadFile(m_path) == (isNew ? kNew : kOld));
            const std::string waiting = m_path + ".bck";
            ASSERT_EQ(fs::exists(waiting), HasNamed(waiting) && !isNew);
            EXPECT_TRUE(!fs::exists(waiting) || ReadFile(waiting) == kNew);
            const std::string saved = m_desk.program / "Backup/song.mp3";
            ASSERT_EQ(fs::exists(saved), HasNamed(saved));
            EXPECT_TRUE(!fs::exists(saved) || ReadFile(saved) == kOld);
            EXPECT_TRUE(!isNew || fs::exists(saved) == backup);
            m_files.faultyCall = 0; // the next start finds a song that can be edited
            m_files.isDead = false;
            const std::string before = ReadFile(m_path);
            EXPECT_EQ(EditAsItIs(), true);
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            EXPECT_TRUE(ReadFile(m_path).ends_with(kAudio + kImage));
        }
    }
}

// The power fails at every point of an edit: the song is complete, and if it is the new one, there
// is a complete backup of the old one.
TEST_F(TagFaults, APowerCutInEveryCall)
{
    const tests::TestFolder root;
    m_path = root / "music/song.mp3";
    tests::WriteFile(m_path, kOld);
    fs::create_directories(root / "program");
    shell::SetAppPath(root / "program");
    shell::TheGlobals().BackUpFiles = true;
    tests::RecordedFiles files(root.Path());
    platform::TheMachine().files = &files;
    EXPECT_TRUE(EditAsItIs());
    platform::TheMachine().files = &m_files;
    ASSERT_TRUE(ReadFile(m_path) == kNew);
    ASSERT_GT(files.Count(), 12);
    int songsAreNew = 0;
    for (int done = 0; done <= files.Count(); ++done)
        files.AfterCut(done, [&](const std::string &after) {
            const std::string song = after + "/music/song.mp3";
            const std::string backup = after + "/program/Backup/song.mp3";
            ASSERT_TRUE(IsWhole(song));
            EXPECT_TRUE(!fs::exists(song + ".bck") || IsWhole(song + ".bck"));
            if (ReadFile(song) == kOld) {
                EXPECT_LT(done, files.Count()) << "what is reported as saved is saved";
                return;
            }
            ++songsAreNew;
            ASSERT_TRUE(fs::exists(backup));
            EXPECT_TRUE(ReadFile(backup) == kOld);
        });
    EXPECT_GT(songsAreNew, 1);
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
            const bool isNew = HasNamed(m_path);
            EXPECT_TRUE(ReadFile(m_path) == (isNew ? kNew : kOld));
            EXPECT_EQ(metadata::LastSaveResult(),
                      isNew ? metadata::SaveResult::Written : metadata::SaveResult::Failed);
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
            EXPECT_LE(
                fs::exists(m_desk.program / "Backup") ? Names(m_desk.program / "Backup").size() : 0,
                1u);
            untouched += isNew ? 0 : 1;
            EXPECT_TRUE(isNew || !m_desk.boxes.empty());
            for (const std::string &box : m_desk.boxes)
                EXPECT_TRUE(box.ends_with(": " + std::generic_category().message(reason)) &&
                            (box.find(m_path) != std::string::npos ||
                             box.starts_with(m_desk.program / "Backup")))
                    << box;
        }
    EXPECT_GT(untouched, 5 * 4);
}

TEST_F(TagFaults, FullDiskIsReportedAndTheSongIsUnchanged)
{
    m_files.createReason = ENOSPC;
    int updates = 0;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const metadata::ID3v2Tag &,
                                                        const std::string &) { ++updates; };
    EXPECT_TRUE(Edit());
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": No space left on device"});
    EXPECT_EQ(updates, 1); // the statements after the failed one run too
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

// The copy is cut off, by whichever call it is made: half a song must not become the new version.
TEST_F(TagFaults, ASongThatBecomesShorterWhileItIsCopied)
{
    struct : tests::FaultyFiles {
        std::int64_t CopyRange(int source, std::int64_t offset, int target,
                               std::size_t count) override
        {
            fs::resize_file(song, 6000);
            return canCopy ? FaultyFiles::CopyRange(source, offset, target, count) : -EXDEV;
        }
        std::string song;
        bool canCopy = true;
    } files;
    files.song = m_path;
    platform::TheMachine().files = &files;
    for (const bool canCopy : {true, false}) {
        files.canCopy = canCopy;
        EXPECT_TRUE(Edit());
        EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Input/output error"});
        EXPECT_TRUE(ReadFile(m_path) == kOld.substr(0, 6000));
        EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
    }
}

TEST_F(TagFaults, AWriteThatTakesNothing)
{
    struct : tests::FaultyFiles {
        std::int64_t Write(int, const char *, std::size_t) override { return 0; }
    } files;
    platform::TheMachine().files = &files;
    EXPECT_TRUE(Edit());
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Input/output error"});
    EXPECT_TRUE(ReadFile(m_path) == kOld);
    EXPECT_EQ(Names(m_desk.music.Path()).size(), 1u);
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

    files.busy = 1000;
    platform::RequestEnd(SIGTERM); // nothing is waited for then, and the edit is finished
    EXPECT_TRUE(Edit());
    platform::RequestEnd(0);
    EXPECT_EQ(files.busy, 999);
    EXPECT_TRUE(ReadFile(m_path) == kNew);
}

// --- a song that another program has open ---------------------------------------------------

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
        const std::int64_t msBefore = m_desk.steadyMs;
        EXPECT_TRUE(Edit());
        EXPECT_EQ(files.busy, -1);
        EXPECT_GT(m_desk.yields - yieldsBefore, 10'000);
        EXPECT_GT(m_desk.steadyMs - msBefore, 100'000); // long enough for the other program
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
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Device or resource busy"});
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
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": Input/output error"});
    EXPECT_FALSE(fs::exists(m_path));
    EXPECT_TRUE(ReadFile(m_path + ".bck") == kNew);
}

} // namespace
