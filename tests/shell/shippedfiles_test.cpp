#include "platform/machine.h"
#include "runtime/error.h"
#include "shell/startup/shippedfiles.h"
#include "tests/support/recordedfiles.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace
{

using namespace shell;

class FirstStart : public ::testing::Test
{
protected:
    FirstStart()
    {
        tests::WriteFile(folder / "share/MP3s.mdb", "shipped catalogue");
        tests::WriteFile(folder / "share/Español.qlt", "shipped language");
        fs::create_directories(folder / "share/sub");
    }
    void Fill() { FillOnFirstStart(folder / "share", folder / "data/quenlin"); }
    std::string Home(const std::string &name) const { return folder / ("data/quenlin/" + name); }

    tests::TestFolder folder;
};

TEST_F(FirstStart, CopiesWhatShips)
{
    Fill();
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "shipped catalogue");
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "shipped language");
    EXPECT_EQ(std::distance(fs::directory_iterator(Home("")), {}), 3); // with the marker
}

TEST_F(FirstStart, NeverTouchesWhatIsThere)
{
    tests::WriteFile(Home("MP3s.mdb"), "my catalogue");
    Fill();
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "my catalogue");
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "shipped language");
}

TEST_F(FirstStart, WhatIsMissingLaterIsMissing)
{
    Fill();
    fs::remove(Home("MP3s.mdb"));
    Fill();
    EXPECT_FALSE(fs::exists(Home("MP3s.mdb")));
}

TEST_F(FirstStart, AnInterruptedOneIsContinued)
{
    fs::rename(folder / "share", folder / "away");
    EXPECT_THROW(Fill(), runtime::RuntimeError);
    fs::rename(folder / "away", folder / "share");
    Fill();
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "shipped catalogue");
}

TEST_F(FirstStart, AFolderThatCannotBeMadeIsReported)
{
    tests::WriteFile(folder / "data", "a file");
    EXPECT_THROW(Fill(), runtime::RuntimeError);
}

// The power fails at every point of the first start: the next start has everything, whole, and once
// the first start is over nothing of it can be lost.
TEST_F(FirstStart, APowerCutIsMended)
{
    tests::WriteFile(folder / "share/Tips.txt", std::string(5000, 't'));
    tests::WriteFile(folder / "share/Help.hlp", "help");
    fs::create_directories(folder / "disk");
    tests::RecordedFiles files(folder / "disk");
    platform::TheMachine().files = &files;
    FillOnFirstStart(folder / "share", folder / "disk/data/quenlin");
    platform::TheMachine().files = &platform::SystemFiles();
    ASSERT_GT(files.Count(), 20);
    const auto expectAll = [&](const std::string &home) {
        for (const auto &entry : fs::directory_iterator(folder / "share")) {
            if (!entry.is_regular_file())
                continue;
            EXPECT_EQ(tests::ReadFile(home + "/" + entry.path().filename().string()),
                      tests::ReadFile(entry.path().string()));
        }
        EXPECT_TRUE(fs::exists(home + "/.filled"));
    };
    int states = 0;
    for (int done = 0; done <= files.Count(); ++done)
        files.AfterCut(done, [&](const std::string &root) {
            ++states;
            const std::string home = root + "/data/quenlin";
            if (done == files.Count())
                expectAll(home);
            FillOnFirstStart(folder / "share", home);
            expectAll(home);
        });
    EXPECT_GT(states, 40);
}

class TornFiles : public FirstStart
{
protected:
    TornFiles() { Fill(); }
    // The user's language file after RestoreTornFiles, when it had `bytes` before.
    std::string Restored(const std::string &bytes)
    {
        tests::WriteFile(Home("Español.qlt"), bytes);
        RestoreTornFiles(folder / "share", folder / "data/quenlin");
        return tests::ReadFile(Home("Español.qlt"));
    }
};

TEST_F(TornFiles, ComeAgain)
{
    const std::string whole = "shipped language";
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(Restored(whole.substr(0, size)), whole);
}

TEST_F(TornFiles, ButNotWhatTheUserChanged)
{
    for (const std::string users :
         {"Shipped", "shipped language and more", "x", "shipped Language"})
        EXPECT_EQ(Restored(users), users);
    fs::remove(Home("Español.qlt"));
    RestoreTornFiles(folder / "share", folder / "data/quenlin");
    EXPECT_FALSE(fs::exists(Home("Español.qlt")));
}

TEST_F(TornFiles, NeverTheCatalogue)
{
    tests::WriteFile(Home("MP3s.mdb"), "");
    RestoreTornFiles(folder / "share", folder / "data/quenlin");
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "");
}

TEST_F(TornFiles, ARemovedInstallationHasNothingToCopy)
{
    tests::WriteFile(Home("Español.qlt"), "");
    fs::remove_all(folder / "share");
    RestoreTornFiles(folder / "share", folder / "data/quenlin");
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "");
}

TEST_F(FirstStart, FoldersAndFilesAreTheUsersAlone)
{
    const mode_t before = umask(0);
    Fill();
    umask(before);
    EXPECT_EQ(fs::status(folder / "data/quenlin").permissions(), fs::perms::owner_all);
    for (const auto &entry : fs::directory_iterator(Home("")))
        EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FirstStart, TwoAtOnceAgree)
{
    tests::WriteFile(folder / "share/big", std::string(4 << 20, 'x'));
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            try {
                Fill();
            } catch (const runtime::RuntimeError &) {
                _exit(1);
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(fs::file_size(Home("big")), 4u << 20);
    EXPECT_EQ(std::distance(fs::directory_iterator(Home("")), {}), 4);
}

// An installation whose files change, and the user's copies after each start.
class Upgrade : public FirstStart
{
protected:
    Upgrade() { Start(); }
    void Start()
    {
        Fill();
        RestoreTornFiles(folder / "share", folder / "data/quenlin");
        RenewShippedFiles(folder / "share", folder / "data/quenlin");
    }
    void Ship(const std::string &name, const std::string &bytes)
    {
        tests::WriteFile(folder / ("share/" + name), bytes);
    }
};

TEST_F(Upgrade, AnUnchangedCopyIsReplaced)
{
    Ship("Español.qlt", "language of version 2");
    Start();
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "language of version 2");
    Ship("Español.qlt", "language of version 3");
    Start();
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "language of version 3");
}

TEST_F(Upgrade, ACopyThatTheUserChangedStays)
{
    tests::WriteFile(Home("Español.qlt"), "my own words");
    for (const std::string shipped : {"version 2", "version 3, a longer text"}) {
        Ship("Español.qlt", shipped);
        Start();
        EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "my own words");
    }
}

TEST_F(Upgrade, ANewFileIsAddedAndADeletedOneStaysAway)
{
    Ship("Français.qlt", "a new language");
    fs::remove(Home("Español.qlt"));
    Start();
    EXPECT_EQ(tests::ReadFile(Home("Français.qlt")), "a new language");
    Ship("Español.qlt", "version 2");
    fs::remove(Home("Français.qlt"));
    Start();
    EXPECT_FALSE(fs::exists(Home("Español.qlt")));
    EXPECT_FALSE(fs::exists(Home("Français.qlt")));
}

TEST_F(Upgrade, TheCatalogueIsNeverTouched)
{
    Ship("MP3s.mdb", "an empty catalogue of version 2");
    Start();
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "shipped catalogue");
    fs::remove(Home("MP3s.mdb"));
    Start();
    EXPECT_FALSE(fs::exists(Home("MP3s.mdb")));
}

TEST_F(Upgrade, ALinkOfTheUserStays)
{
    tests::WriteFile(folder / "mine.qlt", "shipped language");
    fs::remove(Home("Español.qlt"));
    fs::create_symlink(folder / "mine.qlt", Home("Español.qlt"));
    Ship("Español.qlt", "version 2");
    Start();
    EXPECT_TRUE(fs::is_symlink(Home("Español.qlt")));
    EXPECT_EQ(tests::ReadFile(folder / "mine.qlt"), "shipped language");
}

TEST_F(Upgrade, WithoutARecordOnlyEqualCopiesAreKnown)
{
    fs::remove(Home(".shipped"));
    tests::WriteFile(Home("Español.qlt"), "of an unknown version");
    Start();
    Ship("Español.qlt", "version 2");
    Start();
    EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "of an unknown version");
}

// When the record is cut off or contains anything else, no copy is lost.
TEST_F(Upgrade, ADamagedRecordIsNoHarm)
{
    const std::string whole = tests::ReadFile(Home(".shipped"));
    ASSERT_FALSE(whole.empty());
    std::vector<std::string> records = {"\n\n", "x y z w\n", std::string(2 << 20, 'a'),
                                        std::string("\0\xff 1 2 MP3s.mdb\n", 16)};
    for (std::size_t size = 0; size < whole.size(); ++size)
        records.push_back(whole.substr(0, size));
    for (const std::string &record : records) {
        tests::WriteFile(Home(".shipped"), record);
        tests::WriteFile(Home("Español.qlt"), "my own words");
        Ship("Español.qlt", "version " + std::to_string(record.size()));
        Start();
        EXPECT_EQ(tests::ReadFile(Home("Español.qlt")), "my own words");
        EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "shipped catalogue");
    }
}

TEST_F(Upgrade, NothingIsWrittenWhenNothingChanged)
{
    const auto before = fs::last_write_time(Home(".shipped"));
    const auto copy = fs::last_write_time(Home("Español.qlt"));
    Start();
    EXPECT_EQ(fs::last_write_time(Home(".shipped")), before);
    EXPECT_EQ(fs::last_write_time(Home("Español.qlt")), copy);
}

// The power fails at every point of the first start after an upgrade: the next start has the new
// files, whole, and what the user changed.
TEST_F(Upgrade, APowerCutIsMended)
{
    fs::create_directories(folder / "disk");
    const std::string own = folder / "disk/quenlin";
    Ship("Tips.txt", "tips of version 1");
    FillOnFirstStart(folder / "share", own);
    RenewShippedFiles(folder / "share", own);
    tests::WriteFile(own + "/Tips.txt", "my own tips");
    Ship("Español.qlt", std::string(5000, 'e'));
    Ship("Tips.txt", "tips of version 2");
    Ship("Français.qlt", "a new language");
    tests::RecordedFiles files(folder / "disk");
    platform::TheMachine().files = &files;
    RenewShippedFiles(folder / "share", own);
    platform::TheMachine().files = &platform::SystemFiles();
    ASSERT_GT(files.Count(), 10);
    int states = 0;
    for (int done = 0; done <= files.Count(); ++done)
        files.AfterCut(done, [&](const std::string &root) {
            ++states;
            const std::string home = root + "/quenlin";
            RestoreTornFiles(folder / "share", home);
            RenewShippedFiles(folder / "share", home);
            EXPECT_EQ(tests::ReadFile(home + "/Español.qlt"), std::string(5000, 'e'));
            EXPECT_EQ(tests::ReadFile(home + "/Tips.txt"), "my own tips");
            EXPECT_EQ(tests::ReadFile(home + "/Français.qlt"), "a new language");
        });
    EXPECT_GT(states, 10);
}

} // namespace
