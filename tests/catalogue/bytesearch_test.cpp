#include "catalogue/rows/bytesearch.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{

using catalogue::ByteSearch;
using catalogue::LetterCase;

std::size_t PlainFind(const std::string &text, const std::string &needle, std::size_t from,
                      LetterCase letterCase)
{
    if (letterCase == LetterCase::Counts)
        return text.find(needle, from);
    return runtime::UpperAscii(text).find(runtime::UpperAscii(needle), from);
}

TEST(ByteSearch, FindsWhatAPlainSearchFinds)
{
    // Few different bytes, so that there are many near misses; among them those that differ from a
    // letter in the bit of its case only.
    const std::string bytes = {'a', 'A',  'b',    '@',    '`',    '[',
                               '{', '\0', '\x80', '\xE1', '\xC1', ' '};
    std::mt19937 random(3);
    const auto text = [&](std::size_t length) {
        std::string made;
        while (made.size() < length)
            made += bytes[random() % bytes.size()];
        return made;
    };
    std::size_t found = 0;
    for (int i = 0; i < 40000; ++i) {
        const std::string hay = text(random() % 90);
        const std::size_t length = random() % 5 == 0 ? random() % 40 : random() % 4;
        const std::size_t from = random() % 3 == 0 ? random() % 95 : 0;
        std::string needle = text(length);
        if (length > 3 && hay.size() >= length) // a text that occurs
            needle = hay.substr(random() % (hay.size() - length + 1), length);
        const auto letterCase = i % 2 == 0 ? LetterCase::Counts : LetterCase::IgnoredInAscii;
        const auto want = PlainFind(hay, needle, from, letterCase);
        ASSERT_EQ(ByteSearch(needle, letterCase).Find(hay, from), want)
            << testing::PrintToString(needle) << " in " << testing::PrintToString(hay) << " from "
            << from;
        found += want == ByteSearch::kNone ? 0 : 1;
    }
    EXPECT_GT(found, 5000u);
    EXPECT_LT(found, 35000u);
}

TEST(ByteSearch, ReadsNothingAfterTheText)
{
    // Under the address sanitizer a byte too many is an error.
    for (std::size_t length = 1; length < 70; ++length) {
        const std::string text(length, 'x');
        const std::vector<char> alone(text.begin(), text.end());
        EXPECT_EQ(ByteSearch("xy").Find({alone.data(), alone.size()}), ByteSearch::kNone);
        EXPECT_EQ(ByteSearch(text).Find({alone.data(), alone.size()}), 0u);
        EXPECT_EQ(ByteSearch(text + "x").Find({alone.data(), alone.size()}), ByteSearch::kNone);
    }
}

} // namespace
