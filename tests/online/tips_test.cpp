#include "online/tips.h"
#include "tests/support/fakeports.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

using online::Tips;

TEST(LoadTips, Table)
{
    const struct {
        const char *name;
        std::string_view bytes;
        std::vector<std::string> want;
    } cases[] = {
        {"two lines", "one\ntwo\n", {"one", "two"}},
        {"CR LF", "one\r\ntwo\r\n", {"one", "two"}},
        {"open last line", "one\ntwo", {"one", "two"}},
        {"an empty line is a tip", "one\n\ntwo\n", {"one", "", "two"}},
        {"empty file", "", {}},
        {"UTF-8 behind a byte order mark", "\xEF\xBB\xBFé\n", {"é"}},
        {"the code page", "\xE9\n", {"é"}},
    };
    const tests::FakeClock clock;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const tests::TestFolder folder;
        tests::WriteFile(folder / "TIPOFDAY.TXT", c.bytes);
        Tips tips;
        EXPECT_TRUE(LoadTips(tips, folder / "TIPOFDAY.TXT"));
        EXPECT_EQ(tips.lines, c.want);
    }
}

TEST(LoadTips, NoFileIsFalse)
{
    const tests::TestFolder folder;
    Tips tips;
    EXPECT_FALSE(LoadTips(tips, ""));
    EXPECT_FALSE(LoadTips(tips, folder / "TIPOFDAY.TXT"));
    EXPECT_FALSE(LoadTips(tips, folder.Path())); // a folder
    EXPECT_EQ(CurrentTip(tips), "");
}

TEST(PickTip, OneLineIsAlwaysThatLine)
{
    Tips tips;
    tips.lines = {"only"};
    for (int i = 0; i < 100; ++i) {
        PickTip(tips);
        EXPECT_EQ(CurrentTip(tips), "only");
    }
}

TEST(PickTip, ReachesEveryTipAndNoOther)
{
    Tips tips;
    tips.lines = {"a", "b", "c"};
    std::set<std::string_view> seen;
    for (int i = 0; i < 200; ++i) {
        PickTip(tips);
        ASSERT_GE(tips.current, 1u);
        ASSERT_LE(tips.current, 3u);
        seen.insert(CurrentTip(tips));
    }
    EXPECT_EQ(seen.size(), 3u);
}

TEST(SeedTips, TheClockDecides)
{
    tests::FakeClock clock;
    const auto picks = [] {
        Tips tips;
        tips.lines = {"a", "b", "c", "d", "e", "f", "g", "h"};
        SeedTips(tips);
        std::string all;
        for (int i = 0; i < 16; ++i) {
            PickTip(tips);
            all += CurrentTip(tips);
        }
        return all;
    };
    const std::string first = picks();
    EXPECT_EQ(picks(), first);
    clock.now.second += 7;
    EXPECT_NE(picks(), first);
}

} // namespace
