#include "lyrics/breakplaces.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using lyrics::BreakPlaces;

// One digit a position: where each is shown, up to the end of the text.
std::string ShownOf(const std::string &text)
{
    const BreakPlaces places(text);
    std::string shown;
    for (int position = 0; position <= static_cast<int>(text.size()); ++position)
        shown += std::to_string(places.Shown(position));
    return shown;
}

std::string StoredOf(const std::string &text)
{
    const BreakPlaces places(text);
    std::string stored;
    for (int place = 0; place <= places.ShownSize(); ++place)
        stored += std::to_string(places.Stored(place));
    return stored;
}

TEST(BreakPlaces, Table)
{
    const struct {
        const char *name;
        std::string text, shown, stored;
    } cases[] = {
        {"empty", "", "0", "0"},
        {"one line", "ab", "012", "012"},
        {"two lines", "a\r\nb", "01123", "0134"},
        {"a break at the end", "a\r\n", "0112", "013"},
        {"a break at the start", "\r\na", "0012", "023"},
        {"empty lines", "\r\n\r\n", "00112", "024"},
        {"a carriage return alone", "a\rb", "0123", "0123"},
        {"a line feed alone", "a\nb", "0123", "0123"},
        {"the wrong way round", "a\n\rb", "01234", "01234"},
        {"two returns before a feed", "a\r\r\nb", "012234", "01245"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ShownOf(c.text), c.shown);
        EXPECT_EQ(StoredOf(c.text), c.stored);
    }
}

TEST(BreakPlaces, ThereAndBack)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += std::string(static_cast<std::size_t>(i % 7), 'x') + (i % 5 == 0 ? "\n" : "\r\n");
    const BreakPlaces places(text);
    for (int place = 0; place <= places.ShownSize(); ++place)
        ASSERT_EQ(places.Shown(places.Stored(place)), place);
}

} // namespace

// In UTF-8 positions count characters; the view has two units for one beyond U+FFFF.
TEST(BreakPlaces, CharactersOfUtf8)
{
    const BreakPlaces places("a\xF0\x9F\x98\x80\r\n\xE6\xA1\x9C"
                             "b",
                             metadata::TextKind::Utf8);
    EXPECT_EQ(places.ShownSize(), 6);
    constexpr int kShown[] = {0, 1, 3, 3, 4, 5, 6}; // a, the emoji, CR, LF, a character, b, the end
    for (int position = 0; position < 7; ++position)
        EXPECT_EQ(places.Shown(position), kShown[position]) << position;
    constexpr int kStored[] = {0, 1, 1, 2, 4, 5, 6};
    for (int place = 0; place < 7; ++place)
        EXPECT_EQ(places.Stored(place), kStored[place]) << place;
}
