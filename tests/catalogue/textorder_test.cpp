#include "catalogue/rows/textorder.h"
#include "catalogue/rows/textpool.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

// Short texts over an alphabet that has everything which is odd about comparing.
std::vector<std::string> OddTexts(int count)
{
    const std::string pieces[] = {"a",      "A", "b", "é", "É",   "e",    "E\u0301", "ñ",
                                  "Ñ",      "ß", "ẞ", " ", "\0"s, "\x80", "\xFF",    "ı",
                                  "\u017F", "z", "Z", "_", "%",   "д",    "Д"};
    std::mt19937 random(7);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text;
        for (auto length = random() % 5; length > 0; --length)
            text += pieces[random() % std::size(pieces)];
        texts.push_back(text);
    }
    return texts;
}

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

TEST(CollateText, IsAnOrderThatGoesByKeyAndUpperCase)
{
    const auto texts = OddTexts(300);
    for (const auto &a : texts) {
        for (const auto &b : texts) {
            const int byKey = Sign(SortKey(a).compare(SortKey(b)));
            const int byUpper = Sign(runtime::UpperText(a).compare(runtime::UpperText(b)));
            ASSERT_EQ(CollateText(a, b), byKey != 0 ? byKey : byUpper) << a << " / " << b;
        }
    }
}

TEST(SameTrimmed, AsTrimAndUpperText)
{
    const auto texts = OddTexts(300);
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
    const auto texts = OddTexts(5000);
    TextPool pool;
    std::vector<std::uint32_t> numbers;
    for (const auto &text : texts)
        numbers.push_back(pool.Add(text));
    const auto ranks = pool.Ranks(false);
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(pool.At(numbers[i]), texts[i]);
    for (std::size_t i = 0; i + 1 < texts.size(); ++i) {
        const auto a = ranks[numbers[i]], b = ranks[numbers[i + 1]];
        ASSERT_EQ((a > b) - (a < b), CollateText(texts[i], texts[i + 1]));
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
