#include "shell/startup/homechoice.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <filesystem>

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

} // namespace
