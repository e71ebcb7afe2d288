// A rename is killed: the song exists under one of its two names, its row has a path that was right
// once, and the next regeneration adds what is missing.
#include "browser/filecommands.h"
#include "browser/itemlist.h"
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "catalogue/regeneration/walker.h"
#include "catalogue/rowgroups.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfiles.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

// The real files of a process that is killed before one of its calls.
class KilledFiles : public platform::posix::SystemFilesPort
{
public:
    explicit KilledFiles(int lastStep) : m_left(lastStep) { platform::TheMachine().files = this; }
    ~KilledFiles() override { platform::TheMachine().files = &platform::SystemFiles(); }
    KilledFiles(const KilledFiles &) = delete;
    KilledFiles &operator=(const KilledFiles &) = delete;

    int RenameNew(const std::string &from, const std::string &to) override
    {
        Step();
        return SystemFilesPort::RenameNew(from, to);
    }
    int FlushFolderOf(const std::string &path) override
    {
        Step();
        const int reason = SystemFilesPort::FlushFolderOf(path);
        Step();
        return reason;
    }

private:
    void Step()
    {
        if (--m_left < 0)
            kill(getpid(), SIGKILL);
    }

    int m_left;
};

class RenameKillTest : public tests::LibraryFixture
{
protected:
    RenameKillTest() { browser::ResetMainForm(); }
    ~RenameKillTest() override { browser::ResetMainForm(); }

    // Renames the song in another process, which is killed after that many calls. Returns: whether
    // it was killed.
    bool RenameInAChild(int calls)
    {
        catalogue::CloseCatalogue(); // so that the processes share no connection
        const pid_t child = fork();
        if (child == 0) {
            const KilledFiles files(calls);
            const auto records = catalogue::Records(
                catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s", catalogue::kSelect));
            browser::FillItemList(browser::frmMain().LV, *records);
            browser::frmMain().LV.SelectOnly(0);
            desktop.ExpectInput("", "two.mp3");
            browser::RenameFile(browser::frmMain());
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        const bool isKilled = WIFSIGNALED(status);
        EXPECT_EQ(isKilled ? WTERMSIG(status) : WEXITSTATUS(status), isKilled ? SIGKILL : 0);
        return isKilled;
    }

    tests::MemorySettings settings;
};

TEST_F(RenameKillTest, LeavesSongAndRowComplete)
{
    const std::string bytes = tests::Id3v2(tests::TextFrame("TIT2", "One")) + tests::Audio() +
                              tests::Id3v1({.title = "One"});
    const std::string oldRow = "One|||||||~/one.mp3||0";
    const std::string newRow = "One|||||||~/two.mp3||0";
    std::string reason;
    int killed = 0;
    for (int calls = 0;; ++calls) {
        SCOPED_TRACE(calls);
        fs::remove(Song("two.mp3"));
        tests::WriteFile(Song("one.mp3"), bytes);
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kUpdate);
        ASSERT_EQ(catalogue::AddOrUpdateMP3(Song("one.mp3"), reason), catalogue::kAdded) << reason;
        ASSERT_EQ(Rows(), std::vector<std::string>{oldRow});
        if (!RenameInAChild(calls)) {
            EXPECT_EQ(Rows(), std::vector<std::string>{newRow});
            break;
        }
        ++killed;
        const bool renamed = fs::exists(Song("two.mp3"));
        EXPECT_EQ(renamed, calls > 0);
        EXPECT_NE(renamed, fs::exists(Song("one.mp3")));
        EXPECT_EQ(tests::ReadFile(Song(renamed ? "two.mp3" : "one.mp3")), bytes);
        EXPECT_EQ(Rows(), std::vector<std::string>{oldRow});
        catalogue::Dirs().Clear();
        catalogue::ListRefresh(false);
        const std::string last = Rows().back();
        EXPECT_NE(last.find(renamed ? "~/two.mp3" : "~/one.mp3"), std::string::npos) << last;
        EXPECT_TRUE(last.starts_with("One|")) << last;
        ASSERT_LT(calls, 20);
    }
    EXPECT_EQ(killed, 3); // before the rename, after it, and right before the statement
}

} // namespace
