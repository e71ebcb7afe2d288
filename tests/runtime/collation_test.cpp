#include "runtime/collation.h"
#include "runtime/text.h"
#include "tests/support/oddtexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace runtime;
using namespace std::string_literals;

namespace
{

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

TEST(CollateText, AccentsBesideTheirLetters)
{
    std::vector<std::string> names = {"Zebra", "Éric",   "Fan",   "eric",
                                      "Dan",   "Eric B", "Ärger", "Ab"};
    std::sort(names.begin(), names.end(),
              [](const auto &a, const auto &b) { return CollateText(a, b) < 0; });
    EXPECT_EQ(names, (std::vector<std::string>{"Ab", "Ärger", "Dan", "eric", "Éric", "Eric B",
                                               "Fan", "Zebra"}));
    EXPECT_EQ(CollateText("ñandú", "ÑANDÚ"), 0);
    EXPECT_LT(CollateText("Eric", "Éric"), 0);
    EXPECT_EQ(CollateText("", ""), 0);
    EXPECT_LT(CollateText("", "a"), 0);
    EXPECT_LT(CollateText("a"s, "a\0"s), 0);
}

// Each text has its place, also where bytes are damaged and where a vowel sign takes space.
TEST(CollateText, DamagedBytesAndSpacingMarks)
{
    EXPECT_LT(CollateText("é\xFF", "Z"), 0) << "the accent is left out beside a damaged byte, too";
    EXPECT_LT(CollateText("e\xFF", "é\xFF"), 0);
    EXPECT_LT(CollateText("E", "\xFF"), 0);
    EXPECT_LT(CollateText("\u0915\u093E\u092C", "\u0915\u093F\u0905"), 0)
        << "vowel signs that take space count as letters";
    EXPECT_LT(CollateText("\u0915", "\u0915\u093F"), 0);
}

TEST(CollateText, IsAnOrderByKeyThenUpperCase)
{
    const auto texts = tests::OddTexts(300);
    for (const auto &a : texts) {
        for (const auto &b : texts) {
            const int byKey = Sign(SortKey(a).compare(SortKey(b)));
            const int byUpper = Sign(UpperText(a).compare(UpperText(b)));
            ASSERT_EQ(CollateText(a, b), byKey != 0 ? byKey : byUpper) << a << " / " << b;
            ASSERT_EQ(CollateKeyed(SortKey(a), a, SortKey(b), b), CollateText(a, b));
        }
    }
}
