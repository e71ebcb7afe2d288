#include "online/fileinfo.h"
#include "online/version/versionfile.h"
#include "shell/apppath.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

namespace
{

using online::IsNewer;
using online::ParseVersionFile;

TEST(IsNewer, Table)
{
    constexpr struct {
        const char *name;
        std::string_view candidate, current;
        bool want;
    } cases[] = {
        {"equal", "1.6.9", "1.6.9", false},
        {"last part", "1.6.10", "1.6.9", true},
        {"first part decides", "2.0.0", "1.6.9", true},
        {"an older first part with newer ones behind it", "1.6.6", "2.0.0", false},
        {"numbers, not texts", "1.10", "1.9.3", true},
        {"a missing part is 0", "1.6", "1.6.0", false},
        {"a further part that is not 0", "1.6.0.1", "1.6", true},
        {"leading zeros", "1.06.09", "1.6.9", false},
        {"longer than any number type", "1.99999999999999999999999", "1.9", true},
        {"no digits count as 0", "x.y", "0.0", false},
        {"digits up to a letter", "1.7beta", "1.6", true},
        {"empty", "", "0.0.1", false},
        {"against nothing", "0.0.1", "", true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(IsNewer(c.candidate, c.current), c.want);
    }
}

TEST(ParseVersionFile, ReadsBothBlocks)
{
    const auto file =
        ParseVersionFile("1.6.5:2003\r\n1.6.6:12:30\r\nQuenlin version 1.7.0\r\n2.0\r\n");
    ASSERT_EQ(file.databases.size(), 2u);
    EXPECT_EQ(file.databases[0].version, "1.6.5");
    EXPECT_EQ(file.databases[0].date, "2003");
    EXPECT_EQ(file.databases[1].date, "12:30");
    EXPECT_EQ(file.tools, (std::vector<std::string>{"1.7.0", "2.0", ""}));
}

TEST(ParseVersionFile, ALineWithoutColonEndsTheFirstBlock)
{
    const auto file = ParseVersionFile("1:a\r\n\r\n2:b");
    EXPECT_EQ(file.databases.size(), 1u);
    EXPECT_EQ(file.tools,
              (std::vector<std::string>{"", "2:b"})); // the empty line is the first tool
}

TEST(ParseVersionFile, OddTextsAreTakenAsTheyAre)
{
    EXPECT_TRUE(ParseVersionFile("").databases.empty());
    EXPECT_TRUE(ParseVersionFile("").tools.empty());
    const auto onlyFirst = ParseVersionFile("1.6.6:2004");
    EXPECT_EQ(onlyFirst.databases.size(), 1u);
    EXPECT_TRUE(onlyFirst.tools.empty());
    EXPECT_EQ(ParseVersionFile("a \r\n").tools.front(), "");
    EXPECT_EQ(ParseVersionFile("1:2\n3 4").tools.size(),
              0u); // an LF without CR does not end a line
}

constexpr std::string_view kBlock("V\0S\0_\0I\0N\0F\0O\0\0\0\0\0\xBD\x04\xEF\xFE\0\0\1\0"
                                  "\6\0\1\0\x09\0\0\0",
                                  34);

TEST(VersionInBlock, Table)
{
    const std::string block(kBlock);
    std::string tight = block;
    tight.erase(16, 2); // no padding between key and signature
    std::string wrongKey = block;
    wrongKey[12] = 'P';
    const struct {
        const char *name;
        std::string bytes, want;
    } cases[] = {
        {"a block", block, "1.6.9"},
        {"without padding", tight, "1.6.9"},
        {"inside a file", std::string(100, 'x') + block + std::string(50, 'y'), "1.6.9"},
        {"another key", wrongKey, ""},
        {"a false signature before it", "\xBD\x04\xEF\xFE" + block, "1.6.9"},
        {"nothing", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(online::VersionInBlock(c.bytes), c.want);
    }
    for (std::size_t length = 0; length < block.size(); ++length)
        EXPECT_EQ(online::VersionInBlock(std::string_view(block).substr(0, length)), "") << length;
}

TEST(FileVersion, OwnNameIsThisProgram)
{
    const tests::TestFolder folder;
    shell::SetAppPath(folder.Path());
    EXPECT_EQ(online::FileVersion(shell::AppFile("Quenlin.exe")), "1.6.9");
    EXPECT_EQ(online::FileVersion(shell::AppFile("Pelmont.exe")), "");
    tests::WriteFile(folder / "Pelmont.exe", "MZ" + std::string(kBlock));
    EXPECT_EQ(online::FileVersion(shell::AppFile("Pelmont.exe")), "1.6.9");
    tests::WriteFile(folder / "Dravicolt.exe", "MZ");
    EXPECT_EQ(online::FileVersion(shell::AppFile("Dravicolt.exe")), "");
    EXPECT_EQ(online::FileVersion(folder.Path()), ""); // a folder
}

} // namespace
