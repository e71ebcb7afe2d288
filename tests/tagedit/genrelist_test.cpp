// The list of genres and the search in it by letter.
#include "metadata/genres.h"
#include "tagedit/genrelist.h"

#include <gtest/gtest.h>

#include <algorithm>

using tagedit::FindNextEntry;
using tagedit::GenreEntries;

TEST(GenreEntries, AreSortedWithTheEmptyOneFirst)
{
    const std::vector<std::string> entries = GenreEntries();
    ASSERT_EQ(entries.size(), 126U);
    EXPECT_EQ(entries[0], "");
    EXPECT_EQ(entries[1], "255");
    EXPECT_EQ(entries[2], "A Capella");
    EXPECT_EQ(entries.back(), "Vocal");
    EXPECT_TRUE(std::is_sorted(entries.begin(), entries.end()));
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "Dance Hall"), 0);
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "Blues"), 0);
    for (int number = 0; number < 125; ++number)
        EXPECT_EQ(std::count(entries.begin(), entries.end(), metadata::GenreName(number)), 1)
            << number;
}

TEST(FindNextEntry, StepsThroughALetterAndBeginsAgain)
{
    const std::vector<std::string> entries = GenreEntries();
    std::vector<std::string> seen;
    int index = 0;
    for (int i = 0; i < 12; ++i) {
        index = FindNextEntry(entries, index, i % 2 == 0 ? "r" : "R");
        ASSERT_GE(index, 0);
        seen.push_back(entries[static_cast<std::size_t>(index)]);
    }
    const std::vector<std::string> want = {"R&B",         "Rap",     "Rave",          "Reggae",
                                           "Retro",       "Revival", "Rhythmic Soul", "Rock",
                                           "Rock & Roll", "R&B",     "Rap",           "Rave"};
    EXPECT_EQ(seen, want);
}

TEST(FindNextEntry, Table)
{
    const std::vector<std::string> entries = {"xylo", "", "genre", "Ärger", "great", "2"};
    const struct {
        int index;
        const char *letter;
        int want;
    } cases[] = {
        {-1, "x", 0}, // the whole list, when nothing is selected
        {0, "x", -1}, // the second search begins at entry 1
        {-1, "g", 4}, // "genre" is skipped
        {4, "g", 4},  // from the end back to itself
        {-1, "ä", 3}, {5, "2", 5}, {-1, "", -1}, {-1, "q", -1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(FindNextEntry(entries, c.index, c.letter), c.want) << c.index << c.letter;
}
