#include "runtime/error.h"
#include "shell/startup/programhome.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace
{

using namespace shell;

TEST(ChooseProgramHome, Table)
{
    const tests::TestFolder folder;
    fs::create_directories(folder / "bin");
    const std::string bin = folder / "bin";
    EXPECT_EQ(ChooseProgramHome({bin, "", "/data"}), "/data/quenlin");
    EXPECT_TRUE(IsInstalled({bin, "", "/data"}));
    EXPECT_EQ(ChooseProgramHome({bin, "/second", "/data"}), "/second");
    EXPECT_FALSE(IsInstalled({bin, "/second", "/data"}));
    tests::WriteFile(folder / "bin/portable", "");
    EXPECT_EQ(ChooseProgramHome({bin, "", "/data"}), bin);
    EXPECT_FALSE(IsInstalled({bin, "", "/data"}));
    EXPECT_EQ(ChooseProgramHome({bin, "/second", "/data"}), "/second");
}

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

TEST_F(FirstStart, AnInterruptedOneGoesOn)
{
    fs::rename(folder / "share", folder / "away");
    EXPECT_THROW(Fill(), runtime::RuntimeError);
    fs::rename(folder / "away", folder / "share");
    Fill();
    EXPECT_EQ(tests::ReadFile(Home("MP3s.mdb")), "shipped catalogue");
}

TEST_F(FirstStart, AFolderThatCannotBeMadeIsTold)
{
    tests::WriteFile(folder / "data", "a file");
    EXPECT_THROW(Fill(), runtime::RuntimeError);
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

} // namespace
