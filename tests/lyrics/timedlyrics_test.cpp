#include "lyrics/lyricsbox.h"
#include "lyrics/timedlyrics.h"
#include "runtime/error.h"
#include "tests/lyrics/plainparse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using lyrics::LyricsData;
using lyrics::TimesByKey;
using tests::Parsed;
using tests::ParsedBy;

// The entries as a failure of the test shows them.
std::string Words(const Parsed &parsed)
{
    std::vector<std::string> entries;
    for (const auto &[key, entry] : parsed.times)
        entries.push_back(key + "@" + std::to_string(entry.Start) + "+" +
                          std::to_string(entry.Length));
    std::sort(entries.begin(), entries.end());
    std::string words = parsed.text;
    for (const std::string &entry : entries)
        words += " | " + entry;
    return words + (parsed.error == 0 ? "" : " ! " + std::to_string(parsed.error));
}

struct Case {
    const char *name;
    std::string text;
    Parsed want;
};

TimesByKey Entries(const std::vector<LyricsData> &list)
{
    TimesByKey times;
    for (const LyricsData &entry : list)
        times[std::to_string(entry.Time) + "l"] = entry;
    return times;
}

void Check(const std::vector<Case> &cases)
{
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Words(ParsedBy(tests::ParseMarks, c.text)), Words(c.want));
        for (const auto &[key, entry] : ParsedBy(tests::ParseMarks, c.text).times)
            EXPECT_EQ(key, lyrics::TimesKey(entry.Time));
        EXPECT_EQ(Words(ParsedBy(tests::PlainParse, c.text)), Words(c.want)) << "the rules";
    }
}

TEST(TimedLyrics, Key)
{
    EXPECT_EQ(lyrics::TimesKey(83), "83l");
    EXPECT_EQ(lyrics::TimesKey(0), "0l");
    EXPECT_EQ(lyrics::TimesKey(-5), "-5l");
}

TEST(TimedLyrics, Marks)
{
    Check({
        {"empty", "", {}},
        {"no mark", "One\r\nTwo", {"One\r\nTwo", {}}},
        {"two lines",
         "[00:10]One\r\n[00:20]Two\r\n",
         {"One\r\nTwo\r\n", Entries({{10, 0, 3}, {20, 5, 3}})}},
        {"two marks before one line",
         "[00:10][00:30]Same\r\n",
         {"Same\r\n", Entries({{10, 0, 4}, {30, 0, 4}})}},
        {"a repeated line below others",
         "One\r\n[00:40][02:10]Chorus\r\n[0:50]End\r\n",
         {"One\r\nChorus\r\nEnd\r\n", Entries({{40, 5, 6}, {130, 5, 6}, {50, 13, 3}})}},
        {"one digit", "[1:5]x\r\n", {"x\r\n", Entries({{65, 0, 1}})}},
        {"minutes count sixty", "[1:30]x\r\n", {"x\r\n", Entries({{90, 0, 1}})}},
        {"seconds over sixty", "[0:90]x\r\n", {"x\r\n", Entries({{90, 0, 1}})}},
        {"an empty line", "[0:01]\r\n", {"\r\n", Entries({{1, 0, 0}})}},
        {"in the middle of a line", "One [0:01]two\r\nx", {"One two\r\nx", Entries({{1, 4, 3}})}},
        {"before and in the middle",
         "[0:01]One [0:02]two\r\n",
         {"One two\r\n", Entries({{1, 0, 3}, {2, 4, 3}})}},
        {"a last line without a line break", "[0:01]end", {"end", Entries({{1, 0, -7}})}},
        {"the last line below others",
         "[0:01]One\r\n[0:02]end",
         {"One\r\nend", Entries({{1, 0, 3}, {2, 5, -12}})}},
        {"a carriage return alone ends a line",
         "[0:01]One\r[0:02]Two\r",
         {"One\rTwo\r", Entries({{1, 0, 3}, {2, 4, 3}})}},
        {"a line feed alone does not",
         "[0:01]One\n[0:02]Two\r\n",
         {"One\nTwo\r\n", Entries({{1, 0, 3}, {2, 4, 3}})}},
        {"every byte counts one",
         std::string("[0:01]\xE9\0\xFF\r\n", 11),
         {std::string("\xE9\0\xFF\r\n", 5), Entries({{1, 0, 3}})}},
    });
}

TEST(TimedLyrics, Numbers)
{
    Check({
        {"half to even, down", "[0:10.5]x\r\n", {"x\r\n", Entries({{10, 0, 1}})}},
        {"half to even, up", "[0:11.5]x\r\n", {"x\r\n", Entries({{12, 0, 1}})}},
        {"a part of a minute", "[1.5:1]x\r\n", {"x\r\n", Entries({{91, 0, 1}})}},
        {"the rounding is that of the sum", "[0.01:0]x\r\n", {"x\r\n", Entries({{1, 0, 1}})}},
        {"blanks", "[ 1 : 02 ]x\r\n", {"x\r\n", Entries({{62, 0, 1}})}},
        {"a sign", "[1:-5]x\r\n", {"x\r\n", Entries({{55, 0, 1}})}},
        {"before the start", "[0:-5]x\r\n", {"x\r\n", Entries({{-5, 0, 1}})}},
        {"an exponent", "[1E1:5e0]x\r\n", {"x\r\n", Entries({{605, 0, 1}})}},
        {"a point at an end", "[.5:1.]x\r\n", {"x\r\n", Entries({{31, 0, 1}})}},
        {"the last 32-bit second", "[0:2147483647]x\r\n", {"x\r\n", Entries({{2147483647, 0, 1}})}},
    });
}

TEST(TimedLyrics, BracketsThatAreNoMarks)
{
    Check({
        {"letters", "[a:b]text\r\n", {"[a:b]text\r\n", {}}},
        {"one side a number", "[1:b][a:2]\r\n", {"[1:b][a:2]\r\n", {}}},
        {"an empty side", "[:5][5:][:]\r\n", {"[:5][5:][:]\r\n", {}}},
        {"a second colon", "[1:2:3]x\r\n", {"[1:2:3]x\r\n", {}}},
        {"a line break within", "[1:2\r\n]x\r\n", {"[1:2\r\n]x\r\n", {}}},
        {"the two substitutes count in the start of what follows",
         "[Chorus: twice]\r\n[0:01]One\r\n",
         {"[Chorus: twice]\r\nOne\r\n", Entries({{1, 19, 3}})}},
        {"no colon ends the parsing", "[Intro]\r\n[0:01]One\r\n", {"[Intro]\r\n[0:01]One\r\n", {}}},
        {"what was parsed before that stays parsed",
         "[0:01]One\r\n[x:y]\r\n[Chorus]\r\n[0:02]Two\r\n",
         {"One\r\n[x:y]\r\n[Chorus]\r\n[0:02]Two\r\n", Entries({{1, 0, 3}})}},
        {"the length counts from the last bracket of the line",
         "[0:01]One [live]\r\n",
         {"One [live]\r\n", Entries({{1, 0, 0}})}},
        {"a bracket that stays behind the mark",
         "[0:01]One]two\r\n",
         {"One]two\r\n", Entries({{1, 0, 3}})}},
        {"one within another", "[[0:01]x:]y\r\n", {"[[0:01]x:]y\r\n", {}}},
        {"an opening one alone", "[0:01]One [two\r\n", {"One [two\r\n", Entries({{1, 0, 8}})}},
        {"a closing one alone", "One] two\r\n", {"One] two\r\n", {}}},
        {"substitutes in the lyrics become brackets",
         "{(a)} [0:01]b\r\n",
         {"[a] b\r\n", Entries({{1, 6, 1}})}},
        {"two halves that a mark held apart", "{[0:01](\r\n", {"[\r\n", Entries({{1, 1, 1}})}},
        {"a brace before a bracket", "{[a:b]}\r\n", {"{[a:b]}\r\n", {}}},
    });
}

TEST(TimedLyrics, Failures)
{
    const std::string filler(32'767, 'x');
    Check({
        {"the same second twice: the mark is gone, the entry is the first one's",
         "[0:01]One\r\n[0:01]Two\r\n[0:03]x\r\n",
         {"One\r\nTwo\r\n[0:03]x\r\n", Entries({{1, 0, 3}}), runtime::kDuplicateKey}},
        {"twice by rounding",
         "[0:01.6]a\r\n[0:02]b\r\n",
         {"a\r\nb\r\n", Entries({{2, 0, 1}}), runtime::kDuplicateKey}},
        {"substitutes stay where it failed",
         "[a:b][0:01][0:01]x\r\n",
         {"{(a:b)}x\r\n", Entries({{1, 7, 1}}), runtime::kDuplicateKey}},
        {"a closing bracket first",
         "a] [0:01]x\r\n",
         {"a] [0:01]x\r\n", {}, runtime::kInvalidCall}},
        {"a closing bracket first, behind a mark",
         "[0:01]a] [0:02]x\r\n",
         {"a] [0:02]x\r\n", Entries({{1, 0, 1}}), runtime::kInvalidCall}},
        {"a time beyond 32 bits",
         "[0:2147483648]x\r\n",
         {"[0:2147483648]x\r\n", {}, runtime::kOverflow}},
        {"a time without end", "[1E999:1]x\r\n", {"[1E999:1]x\r\n", {}, runtime::kOverflow}},
        {"the last place that 16 bits hold",
         filler + "[0:01]\r\n",
         {filler + "\r\n", Entries({{1, 32'767, 0}})}},
        {"one beyond",
         filler + "y[0:01]\r\n[0:02]\r\n",
         {filler + "y[0:01]\r\n[0:02]\r\n", {}, runtime::kOverflow}},
        {"the longest line",
         "[0:01]" + filler + "\r\n",
         {filler + "\r\n", Entries({{1, 0, 32'767}})}},
        {"one longer",
         "[0:01]y" + filler + "\r\n",
         {"[0:01]y" + filler + "\r\n", {}, runtime::kOverflow}},
        {"the last line that counts backwards",
         filler.substr(6) + "[0:01]z",
         {filler.substr(6) + "z", Entries({{1, 32'761, -32'768}})}},
        {"one beyond that",
         filler.substr(5) + "[0:01]z",
         {filler.substr(5) + "[0:01]z", {}, runtime::kOverflow}},
    });
}

TEST(TimedLyrics, EntriesOfAnEarlierTextStay)
{
    TimesByKey times = Entries({{1, 7, 7}});
    std::string text = "[0:02]One\r\n[0:01]Two\r\n";
    EXPECT_THROW(tests::ParseMarks(text, times), runtime::RuntimeError);
    EXPECT_EQ(times, Entries({{1, 7, 7}, {2, 0, 3}}));
    EXPECT_EQ(text, "One\r\nTwo\r\n");
}

// Texts of the characters that matter, many of them nearly right.
TEST(TimedLyrics, AnyTextAsTheRulesHaveIt)
{
    constexpr std::string_view pieces[] = {"[",  "]",    ":",     "1",      "[0:1]", "[00:02]",
                                           "\r", "\r\n", "{(",    ")}",     "{",     "(",
                                           " ",  "x",    "[a:b]", "[1:2.5", "9]"};
    std::mt19937 random(20'260'305); // NOLINT(cert-msc51-cpp): the same texts every time
    int marks = 0;
    int failures = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::string text;
        for (unsigned count = random() % 30; count > 0; --count)
            text += pieces[random() % std::size(pieces)];
        const Parsed got = ParsedBy(tests::ParseMarks, text);
        ASSERT_EQ(Words(got), Words(ParsedBy(tests::PlainParse, text))) << text;
        marks += static_cast<int>(got.times.size());
        failures += got.error != 0 ? 1 : 0;
    }
    EXPECT_GT(marks, 5'000); // many of the texts have marks
    EXPECT_GT(failures, 1'000);
}

// What a text of a megabyte may take; the sanitizers slow everything down.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUENLIN_SLOWED
#endif
#endif
#ifdef QUENLIN_SLOWED
constexpr double kLimitMs = 4000;
#else
constexpr double kLimitMs = 200;
#endif

// The time that one parsing takes, the best of three, so that a busy machine does not count.
double Milliseconds(const std::string &text)
{
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const Parsed parsed = ParsedBy(tests::ParseMarks, text);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        EXPECT_FALSE(parsed.text.empty());
        best = std::min(best, took.count());
    }
    return best;
}

std::string Repeated(std::string_view piece, std::size_t bytes)
{
    std::string text;
    while (text.size() < bytes)
        text += piece;
    return text;
}

// The work is proportional to the length of the text, whatever the text contains.
TEST(TimedLyrics, AMegabyteIsQuick)
{
    constexpr std::size_t size = 1'000'000;
    std::string marks;
    for (int i = 0; i < 10'000; ++i)
        marks += "[" + std::to_string(i / 60) + ":" + std::to_string(i % 60) + "]";
    const std::string nested = std::string(size / 2, '[') + ":" + std::string(size / 2, ']');
    const std::vector<std::pair<const char *, std::string>> texts = {
        {"10,000 marks before one line", marks + "x\r\n" + std::string(900'000, 'x')},
        {"brackets that are no marks", Repeated("[a:b]", size)},
        {"one within the other", nested},
        {"one within the other, a colon each", Repeated("[:", size / 2) + Repeated("]", size / 2)},
        {"blanks before a colon", std::string(size / 3, '[') + std::string(size / 3, ' ') + ":" +
                                      std::string(size / 3, ']')},
        {"closing brackets", "[0:1]" + std::string(size, ']')},
        {"opening brackets", "[a:b]" + std::string(size, '[')},
        {"no bracket", std::string(size, 'x')},
    };
    for (const auto &[name, text] : texts)
        EXPECT_LT(Milliseconds(text), kLimitMs) << name;
}

// As many lines with a mark each as have room in 16 bits, and every mark of the long line above.
TEST(TimedLyrics, ManyMarks)
{
    std::string text;
    for (int i = 0; i < 10'000; ++i)
        text += "[" + std::to_string(i / 60) + ":" + std::to_string(i % 60) + "]";
    EXPECT_EQ(ParsedBy(tests::ParseMarks, text + "x\r\n").times.size(), 10'000U);
    text.clear();
    for (int i = 0; i < 5'000; ++i)
        text += "[" + std::to_string(i / 60) + ":" + std::to_string(i % 60) + "]abc\r\n";
    const Parsed parsed = ParsedBy(tests::ParseMarks, text);
    EXPECT_EQ(parsed.error, 0);
    ASSERT_EQ(parsed.times.size(), 5'000U);
    EXPECT_EQ(parsed.times.at("4999l"), (LyricsData{4999, 24'995, 3}));
    EXPECT_LT(Milliseconds(text), kLimitMs);
}

} // namespace

// In UTF-8 a mark's place and length count characters.
TEST(TimedLyrics, CharactersOfUtf8)
{
    std::string text = "[00:10]\xE6\xA1\x9C\r\n{(\xD0\xB9[a:b]\r\n[00:20]\xF0\x9F\x98\x80 ab\r\n";
    lyrics::TimesByKey times;
    lyrics::ParseMarks(metadata::TextKind::Utf8, text, times);
    EXPECT_EQ(text, "\xE6\xA1\x9C\r\n[\xD0\xB9[a:b]\r\n\xF0\x9F\x98\x80 ab\r\n");
    ASSERT_EQ(times.size(), 2U);
    EXPECT_EQ(times.at("10l"), (lyrics::LyricsData{10, 0, 1}));
    // Before it: a character, a line end, "{(", a character, "{(a:b)}", a line end.
    EXPECT_EQ(times.at("20l"), (lyrics::LyricsData{20, 15, 4}));
}

TEST(LyricsBox, PositionsAreCharacters)
{
    lyrics::LyricsBox box;
    box.kind = metadata::TextKind::Utf8;
    box.SetText("\xE6\xA1\x9C\r\n\xF0\x9F\x98\x80");
    box.Select(0, 100);
    EXPECT_EQ(box.SelLength(), 4);
    box.Replace(3, 1, "\xD0\xB9\xD0\xB9");
    EXPECT_EQ(box.Text(), "\xE6\xA1\x9C\r\n\xD0\xB9\xD0\xB9");
    EXPECT_EQ(box.SelStart(), 5);
    EXPECT_EQ(box.OffsetOf(3), 5U);
    EXPECT_EQ(box.PositionAt(5), 3);
}
