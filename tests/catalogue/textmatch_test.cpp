#include "catalogue/rows/textmatch.h"
#include "catalogue/rows/textpool.h"
#include "runtime/collation.h"
#include "runtime/text.h"
#include "tests/support/oddtexts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace catalogue;
using namespace std::string_literals;

TEST(SameTrimmed, AsTrimAndUpperText)
{
    const auto texts = tests::OddTexts(300);
    for (const auto &a : texts)
        for (const auto &b : texts)
            ASSERT_EQ(SameTrimmed(a, b),
                      runtime::UpperText(runtime::Trim(a)) == runtime::UpperText(runtime::Trim(b)))
                << a << " / " << b;
    EXPECT_TRUE(SameTrimmed("  ABC ", "abc"));
    EXPECT_FALSE(SameTrimmed("abc\0"s, "abc"));
}

TEST(LikePattern, Table)
{
    const struct {
        const char *name;
        std::string pattern, text;
        bool want;
        std::string escape;
    } cases[] = {
        {"whole text", "abc", "abc", true, ""},
        {"letter case", "aBc", "AbC", true, ""},
        {"Unicode letter case", "%ÑANDÚ%", "un ñandú", true, ""},
        {"not the whole", "ab", "abc", false, ""},
        {"any", "%", "", true, ""},
        {"none or more", "a%c", "ac", true, ""},
        {"contains", "%needle%", "hay needle hay", true, ""},
        {"contains not", "%needle%", "hay needl", false, ""},
        {"two anys", "%%", "x", true, ""},
        {"comes back", "%ab%abc", "ababxabc", true, ""},
        {"one", "a_c", "abc", true, ""},
        {"one is not none", "a_c", "ac", false, ""},
        {"one character, two bytes", "a_c", "añc", true, ""},
        {"empty pattern", "", "", true, ""},
        {"empty pattern, text", "", "x", false, ""},
        {"NUL", "%\0b%"s, "a\0b"s, true, ""},
        {"byte FF is itself", "a\xFF", "ab", false, ""},
        {"byte FF finds itself", "%\xFF%", "a\xFFz", true, ""},
        {"escaped", "50!%", "50%", true, "!"},
        {"escaped is no wildcard", "50!%", "501", false, "!"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(LikePattern(c.pattern, c.escape).Matches(c.text), c.want);
    }
}

TEST(TextPool, EqualTextsShareANumberAndRanksFollowTheOrder)
{
    const auto texts = tests::OddTexts(5000);
    TextPool pool;
    std::vector<std::uint32_t> numbers;
    for (const auto &text : texts)
        numbers.push_back(pool.Add(text));
    const auto ranks = pool.Ranks(false);
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(pool.At(numbers[i]), texts[i]);
    for (std::size_t i = 0; i + 1 < texts.size(); ++i) {
        const auto a = ranks[numbers[i]], b = ranks[numbers[i + 1]];
        ASSERT_EQ((a > b) - (a < b), runtime::CollateText(texts[i], texts[i + 1]));
        ASSERT_EQ(numbers[i] == numbers[i + 1], texts[i] == texts[i + 1]);
        ASSERT_GT(a, ranks[TextPool::kNull]);
    }
}

TEST(TextPool, NumbersByTheirValue)
{
    TextPool pool;
    const auto ten = pool.Add("10"), nine = pool.Add("9");
    EXPECT_LT(pool.Ranks(true)[nine], pool.Ranks(true)[ten]);
    EXPECT_GT(pool.Ranks(false)[nine], pool.Ranks(false)[ten]);
}
