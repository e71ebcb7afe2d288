#include "online/history.h"
#include "runtime/error.h"

#include <gtest/gtest.h>

namespace
{

using online::RichText;

TEST(AddHistoryLine, Table)
{
    constexpr struct {
        const char *name;
        std::string_view before, line;
        std::int32_t kind;
        std::string_view want;
    } cases[] = {
        {"first title", "", "[t]Quenlin", 0, "[b]Quenlin[/b]\r"},
        {"title behind text", "x\r", "[t]1.4.7", 0, "x\r\r[b]1.4.7[/b]\r"},
        {"a title's kind does not count", "", "[t]1", 2, "[b]1[/b]\r"},
        {"mended", "", "a", 1, "    <(BugFix)> a\r"},
        {"new", "", "a", 2, "    <(New)> a\r"},
        {"changed", "", "a", 4, "    <(Changed)> a\r"},
        {"removed", "", "a", 8, "    <(Removed)> a\r"},
        {"no kind", "", "a", 0, "a\r"},
        {"an unknown kind", "", "a", 3, "a\r"},
        {"empty line", "", "", 1, "    <(BugFix)> \r"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        std::string text(c.before);
        online::AddHistoryLine(text, c.line, c.kind);
        EXPECT_EQ(text, c.want);
    }
}

TEST(FindHistoryMarker, Table)
{
    const auto marker = online::FindHistoryMarker("ab <(New)> cd <(BugFix)>");
    EXPECT_EQ(marker.start, 3u);
    EXPECT_EQ(marker.end, 8u);
    EXPECT_EQ(marker.word, "New");
    EXPECT_EQ(online::FindHistoryMarker("").word, "");
    EXPECT_EQ(online::FindHistoryMarker("<(New").word, "");
    EXPECT_EQ(online::FindHistoryMarker("New)> <(x").word, "");
    // The end is searched for after "<(".
    EXPECT_EQ(online::FindHistoryMarker(")> <(x)>").word, "x");
    EXPECT_EQ(online::FindHistoryMarker("<()>").word, "");
}

TEST(HistoryMarkup, TitlesComeBackBold)
{
    const auto box = online::ReadRTF(online::HistoryMarkupToRTF(
        online::PlainToRTF("[b]1.4.8[/b]\rC:\\ {x}\r[b]Ü\U0001F3B5[/b]\r")));
    EXPECT_EQ(box.text, "1.4.8\rC:\\ {x}\rÜ\U0001F3B5\r");
    EXPECT_EQ(box.bold, (std::vector<RichText::Bold>{{0, 5}, {14, 20}}));
}

TEST(ReadRTF, Table)
{
    const struct {
        const char *name;
        std::string_view rtf, text;
        std::vector<RichText::Bold> bold;
    } cases[] = {
        {"nothing", "", "", {}},
        {"bold by number", "a\\b1 b\\b0 c", "abc", {{1, 2}}},
        {"bold that never ends", "a\\b b", "ab", {{1, 2}}},
        {"twice on, once off", "\\b a\\b b\\b0 c", "abc", {{0, 2}}},
        {"off alone", "\\b0 a", "a", {}},
        {"an unknown word is passed over", "\\fs24 a", "a", {}},
        {"line ends of the file are no text", "a\r\nb", "ab", {}},
        {"a back-slash at the end", "a\\", "a", {}},
        {"a unit at the end", "\\u228", "ä", {}},
        {"a lone second unit", "\\u-8372?a", "a", {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto box = online::ReadRTF(c.rtf);
        EXPECT_EQ(box.text, c.text);
        EXPECT_EQ(box.bold, c.bold);
    }
}

TEST(ReplaceHistoryMarkers, PicturesTakeTheMarkersPlaces)
{
    RichText box;
    box.text = "T\r    <(New)> a\r    <(BugFix)> b\r    <(New)> c\rU\r";
    const auto last = box.text.find('U');
    box.bold = {{0, 1}, {last, last + 1}};
    online::ReplaceHistoryMarkers(box, [](const std::string &) { return true; });
    EXPECT_EQ(box.text, "T\r    \uFFFC a\r    \uFFFC b\r    \uFFFC c\rU\r");
    ASSERT_EQ(box.pictures.size(), 3u);
    for (const auto &picture : box.pictures)
        EXPECT_EQ(box.text.substr(picture.at, 3), "\uFFFC") << picture.key;
    EXPECT_EQ(box.pictures[0].key, "New"); // kind by kind
    EXPECT_EQ(box.pictures[1].key, "New");
    EXPECT_EQ(box.pictures[2].key, "BugFix");
    EXPECT_EQ(box.bold[0], (RichText::Bold{0, 1}));
    EXPECT_EQ(box.text.substr(box.bold[1].begin, 1), "U");
}

TEST(ReplaceHistoryMarkers, AKindWithoutPictureFails)
{
    RichText box;
    box.text = "<(New)> <(Odd)>";
    try {
        online::ReplaceHistoryMarkers(box, [](const std::string &key) { return key == "New"; });
        FAIL() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kSubscriptOutOfRange);
    }
    EXPECT_EQ(box.text, "\uFFFC <(Odd)>");
}

std::size_t CountOf(std::string_view text, std::string_view part)
{
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(HistoryText, HasAllItsLines)
{
    const std::string text = online::HistoryText();
    EXPECT_EQ(CountOf(text, "[b]"), 29u);
    EXPECT_EQ(CountOf(text, "[/b]"), 29u);
    EXPECT_EQ(CountOf(text, "    <(New)> "), 47u);
    EXPECT_EQ(CountOf(text, "    <(BugFix)> "), 28u);
    EXPECT_EQ(CountOf(text, "    <(Changed)> "), 12u);
    EXPECT_EQ(CountOf(text, "    <(Removed)> "), 0u);
    EXPECT_TRUE(
        text.starts_with("[b]Quenlin[/b]\r\r[b]1.4.7[/b]\r    <(New)> Search function added.\r"
                         "    <(New)> Quenlin version's History added.\r\r[b]1.4.8[/b]\r"
                         "    <(BugFix)> When selecting a drive (C:\\) the count"))
        << text.substr(0, 300);
    EXPECT_TRUE(
        text.ends_with("    <(New)> Typing on the genre combobox would select the first match.\r"
                       "    <(Changed)> If the MP3 has no tag, the file gets added anyway.\r"));
    EXPECT_NE(
        text.find("    <(Changed)> Enlargement of the Folders and File boxes in the preferences' "
                  "dialog\rbox.\r"),
        std::string::npos);
}

TEST(HistoryText, TitlesAreTheVersionsInOrder)
{
    const std::string text = online::HistoryText();
    std::vector<std::string> want{"Quenlin"};
    for (const auto &[minor, last] : {std::pair{4, 9}, {5, 14}, {6, 9}})
        for (int patch = minor == 4 ? 7 : 0; patch <= last; ++patch)
            want.push_back("1." + std::to_string(minor) + "." + std::to_string(patch));
    std::vector<std::string> titles;
    for (auto at = text.find("[b]"); at != std::string::npos; at = text.find("[b]", at + 1))
        titles.push_back(text.substr(at + 3, text.find("[/b]", at) - at - 3));
    EXPECT_EQ(titles, want);
}

} // namespace
