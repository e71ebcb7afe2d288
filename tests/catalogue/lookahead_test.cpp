// A walk over songs on a slow disk: their bytes are being read before the walk needs them, and the
// result is the same as on a fast disk.
#include "catalogue/regeneration/walker.h"
#include "metadata/mp3info.h"
#include "platform/machine.h"
#include "platform/posix/disk/readahead.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/support/wait.h"

#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;
using catalogue::LastRegeneration;
using catalogue::ListRefresh;
using platform::Answer;
using tests::RowList;

namespace
{

struct SlowFiles : platform::posix::SystemFilesPort {
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        ++(std::this_thread::get_id() == logic ? readsOfLogic : readsAhead);
        return SystemFilesPort::ReadAt(handle, offset, to, count, mayWait);
    }

    const std::thread::id logic = std::this_thread::get_id();
    std::atomic<int> readsOfLogic = 0, readsAhead = 0;
};

struct SlowWalk : tests::Regeneration {
    SlowWalk()
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &files;
    }
    ~SlowWalk() override
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &platform::SystemFiles();
    }

    static std::string Number(int number)
    {
        return (number < 10 ? "0" : "") + std::to_string(number);
    }

    // Waits until the last change of each song is old enough to be distinguished from a later one.
    void AwaitSettled() const
    {
        EXPECT_TRUE(tests::WaitUntil([&] {
            platform::Files &disk = platform::SystemFiles();
            for (const auto &entry : fs::recursive_directory_iterator(Music())) {
                platform::FileIdentity file;
                if (disk.Identify(entry.path(), file) != 0 ||
                    !platform::WasSettled(file, disk.StampClockNs()))
                    return false;
            }
            return true;
        }));
    }

    std::shared_ptr<SlowFiles> slow = std::make_shared<SlowFiles>();
    platform::posix::ReadAheadFiles files{slow};
};

TEST_F(SlowWalk, TheSameRowsAndTheSameReportAsOnAFastDisk)
{
    for (int i = 0; i < 20; ++i)
        for (const char *place : {"", "a/", "a/x/", "B/", "c/"})
            AddSong(place + Number(i) + ".mp3");
    tests::WriteFile(Song("a/none.mp3"), tests::Audio());
    tests::WriteFile(Song("a/picture.mp3"),
                     tests::Id3v2(tests::TextFrame("TIT2", "p") +
                                  tests::TextFrame("APIC", std::string(400'000, 'p'))) +
                         tests::Audio());
    platform::TheMachine().files = &platform::SystemFiles();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    const RowList rows = Rows();
    const std::string report = Report();
    EXPECT_EQ(rows.size(), 102U);

    AwaitSettled(); // so that no file is read a second time
    platform::TheMachine().files = &files;
    catalogue::Dirs().Clear();
    shell::TheGlobals().DeleteBeforeAppend = true;
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(Report(), report);
    EXPECT_GT(slow->readsAhead, slow->readsOfLogic);
}

TEST_F(SlowWalk, AFileThatVanishesOrChangesGivesTheSameResult)
{
    for (int i = 0; i < 20; ++i)
        AddSong(Number(i) + ".mp3");
    ASSERT_EQ(mkfifo(Song("12.pipe.mp3").c_str(), 0600), 0);
    AwaitSettled();
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text != "Adding: 10.mp3")
            return;
        desktop.doEvents = {};
        fs::remove(Song("11.mp3"));
        tests::WriteFile(Song("13.mp3"), tests::Tagged("changed"));
        tests::WriteFile(Song("new"), tests::Tagged("replaced"));
        fs::rename(Song("new"), Song("14.mp3"));
    };
    desktop.ExpectBox("Some files could not be added", Answer::No);
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_GT(slow->readsAhead, 0);
    EXPECT_EQ(LastRegeneration().failed, 2);
    EXPECT_EQ(LastRegeneration().errors, Song("11.mp3") + ": No such file or directory\r" +
                                             Song("12.pipe.mp3") + ": Illegal seek\r");
    const RowList rows = Rows();
    ASSERT_EQ(rows.size(), 19U);
    EXPECT_TRUE(rows[11].starts_with("12.mp3|")) << rows[11];
    EXPECT_TRUE(rows[12].starts_with("changed|")) << rows[12];
    EXPECT_TRUE(rows[13].starts_with("replaced|")) << rows[13];
    EXPECT_TRUE(rows[18].starts_with("19.mp3|")) << rows[18];
}

TEST_F(SlowWalk, StopLeavesNothingOpen)
{
    for (int i = 0; i < 60; ++i)
        AddSong(Number(i) + ".mp3");
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text == "Adding: 30.mp3")
            catalogue::StopRegeneration();
    };
    ListRefresh(false);
    EXPECT_TRUE(LastRegeneration().stopped);
    EXPECT_EQ(LastRegeneration().files, 30);
    const auto openSongs = [&] {
        int count = 0;
        std::error_code ignored;
        for (const auto &entry : fs::directory_iterator("/proc/self/fd"))
            count += fs::read_symlink(entry, ignored).string().starts_with(Music()) ? 1 : 0;
        return count;
    };
    EXPECT_TRUE(tests::WaitUntil([&] { return openSongs() == 0; }));
}

} // namespace
