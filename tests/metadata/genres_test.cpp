#include "metadata/genres.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>

namespace
{

using metadata::GenreName;
using metadata::GenreNumber;

TEST(GenreNameOfText, Table)
{
    constexpr struct {
        std::string_view value, want;
    } cases[] = {
        {"Rock", "Rock"},
        {"17", "Rock"},
        {"0", "255"},
        {"00", "Blues"},
        {" 0", "Blues"},
        {"0.0", "Blues"},
        {"1e-400", "Blues"},
        {"-0", "Blues"},
        {"1", "Classic Rock"},
        {" 17 ", "Rock"},
        {"17.0", "Rock"},
        {"17.5", ""},
        {"125", "Dance Hall"},
        {"126", ""},
        {"255", ""},
        {"-1", ""},
        {"1E1", "New Age"},
        {"", ""},
        {"Mi genero", "Mi genero"},
        {"17 Rock", "17 Rock"},
        {"(17)", "(17)"},
        {"99999999999999999999999", ""},
        {"Blues", "Blues"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(GenreName(c.value), c.want) << '"' << c.value << '"';
}

TEST(GenreNameOfNumber, Table)
{
    constexpr struct {
        double value;
        std::string_view want;
    } cases[] = {{0, "255"}, {1, "Classic Rock"}, {17, "Rock"}, {125, "Dance Hall"},
                 {126, ""},  {255, ""},           {-1, ""},     {0.5, ""},
                 {17.5, ""}, {1e300, ""}};
    for (const auto &c : cases)
        EXPECT_EQ(GenreName(c.value), c.want) << c.value;
}

TEST(GenreNumber, Table)
{
    constexpr struct {
        std::string_view name;
        int want;
    } cases[] = {{"rock", 17},   {"ROCK", 17}, {"Rock", 17},   {"Dance Hall", 125},
                 {"Blues", 255}, {"255", 0},   {"", 255},      {"Mi genero", 255},
                 {"17", 255},    {"0", 255},   {"Rock ", 255}, {"techno-indistrial", 51},
                 {"r&b", 14},    {"Goa", 255}};
    for (const auto &c : cases)
        EXPECT_EQ(GenreNumber(c.name), c.want) << '"' << c.name << '"';
}

TEST(Genres, EveryNumberIsReadBack)
{
    for (int number = 0; number <= 125; ++number)
        EXPECT_EQ(GenreNumber(GenreName(number)), number);
}

TEST(Genres, PlacesInTheTable)
{
    EXPECT_EQ(metadata::kGenreNames.size(), 126u);
    constexpr std::pair<int, std::string_view> places[] = {{0, "Blues"},
                                                           {7, "Hip-Hop"},
                                                           {32, "Classical"},
                                                           {51, "Techno-Indistrial"},
                                                           {59, "Gansta"},
                                                           {67, "Psychaledic"},
                                                           {93, "Psychadelic Rock"},
                                                           {100, "Humour"},
                                                           {123, "A Capella"},
                                                           {124, "Euro-House"},
                                                           {125, "Dance Hall"}};
    for (const auto &[number, name] : places)
        EXPECT_EQ(metadata::kGenreNames[static_cast<std::size_t>(number)], name);
}

// Two tables, typed by themselves, agree but for the spellings in which they are to differ.
TEST(Genres, TheOtherTableDiffersInItsOwnSpellingsOnly)
{
    const std::vector<std::string> others = runtime::Split(metadata::kOtherGenreNames, "|");
    ASSERT_EQ(others.size(), 149u);
    const std::map<int, std::string_view> differing = {
        {27, "Trip Hop"},      {40, "Alt. Rock"},   {51, "Techno-Industrial"},
        {59, "Gangsta Rap"},   {62, "Pop/Punk"},    {67, "Phychedelic"},
        {81, "Folk/Rock"},     {84, "Fast-Fusion"}, {85, "Bebob"},
        {89, "Blue Grass"},    {90, "Avantegarde"}, {93, "Psychedelic Rock"},
        {117, "power Ballad"}, {123, "A Cappella"}};
    for (int number = 0; number <= 125; ++number) {
        const auto at = static_cast<std::size_t>(number);
        const auto own = differing.find(number);
        EXPECT_EQ(others[at + 1], own == differing.end() ? metadata::kGenreNames[at] : own->second)
            << number;
    }
}

TEST(Genres, TheOtherTableHas148Names)
{
    const std::string_view all = metadata::kOtherGenreNames;
    EXPECT_EQ(std::count(all.begin(), all.end(), '|'), 148);
    EXPECT_TRUE(all.starts_with(" |Blues|Classic Rock|"));
    EXPECT_TRUE(all.ends_with("|A Cappella|Euro-House|Dance Hall|Goa|Drum & Bass|Club-House|"
                              "Hardcore|Terror|indie|Brit Pop|Negerpunk|Polsk Punk|Beat|Christian "
                              "Gangsta Rap|Heavy Metal|Black Metal|Crossover|Comteporary Christian|"
                              "Christian Rock|Merengue|Salsa|Trash Metal|Anime|JPop|Synth Pop"));
}

} // namespace
