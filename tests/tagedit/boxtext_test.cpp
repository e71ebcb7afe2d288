// What a box shows of a field, and which bytes the field gets when the box is changed.
#include "runtime/codepage.h"
#include "runtime/utf8.h"
#include "tagedit/boxtext.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

using tagedit::EditedField;
using tagedit::ShownText;
using tests::Z;

TEST(ShownText, EndsAtTheFirstNul)
{
    EXPECT_EQ(ShownText(Z("abc\0def")), "abc");
    EXPECT_EQ(ShownText(Z("\0abc")), "");
    EXPECT_EQ(ShownText("Se\xF1or"), "Señor");
    EXPECT_EQ(ShownText("a\r\nb\rc\nd"), "a\r\nb\rc\nd");
    EXPECT_EQ(ShownText(""), "");
}

// Whatever bytes a field has: an unchanged box returns them, and a character that is typed at the
// end or the start and then deleted changes nothing except what followed a NUL.
TEST(EditedField, EveryByteIsKept)
{
    std::string every;
    for (int byte = 1; byte < 256; ++byte)
        every += static_cast<char>(byte);
    every = "first" + every + "last\xA0\t ";
    EXPECT_EQ(EditedField(every, ShownText(every)), every);
    EXPECT_EQ(EditedField(every, ShownText(every) + "x"), every + "x");
    EXPECT_EQ(EditedField(every, "x" + ShownText(every)), "x" + every);
    EXPECT_EQ(EditedField(Z("a\0b\0"), "a"), Z("a\0b\0"));
    EXPECT_EQ(EditedField(Z("a\0b\0"), "ax"), "ax");
    EXPECT_EQ(EditedField(Z("a\0b\0"), ""), "");
}

TEST(EditedField, Table)
{
    const struct {
        const char *name;
        std::string field, edited, want;
    } cases[] = {
        {"typed into an empty box", "", "Señor", "Se\xF1or"},
        {"emptied", "abc", "", ""},
        {"a letter in the middle", "abc", "abxc", "abxc"},
        {"a letter less", "aabb", "abb", "abb"},
        {"everything new", "abc", "xyz", "xyz"},
        {"a new line end is CR LF", "ab", "a\nb", "a\r\nb"},
        {"the toolkit's line ends are the field's own", "a\rb\nc\r\nd", "a\nb\nc\nd!",
         "a\rb\nc\r\nd!"},
        {"the toolkit's separator too", "a\r\nb",
         "a\xE2\x80\xA9"
         "bc",
         "a\r\nbc"},
        {"a line between lines", "a\rb\rc", "a\nb\nnew\nc", "a\rb\rnew\r\nc"},
        {"a line taken out", "a\rb\nc", "a\nc", "a\rc"},
        {"what the code page lacks", "abc", "abŁc", "ab?c"},
        {"a no-break space stays",
         "a\xA0"
         "b",
         "a\xC2\xA0"
         "bc",
         "a\xA0"
         "bc"},
        {"accents around the change", "\xE9\xE8", "éxè", "\xE9x\xE8"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(EditedField(c.field, c.edited), c.want) << c.name;
}

TEST(EditedField, FollowsTheCodePage)
{
    runtime::UseCodePage(1250);
    EXPECT_EQ(EditedField("\xB3", "łx"), "\xB3x"); // U+0142
    EXPECT_EQ(ShownText("\xB3"), "ł");
    runtime::UseCodePage(1252);
}

TEST(Characters, AreCountedNotTheirBytes)
{
    EXPECT_EQ(runtime::CountCharacters(""), 0U);
    EXPECT_EQ(runtime::CountCharacters("Señor"), 5U);
    EXPECT_EQ(runtime::CountCharacters("€𝄞"), 2U);
    EXPECT_EQ(runtime::LeftCharacters("Señor", 3), "Señ");
    EXPECT_EQ(runtime::LeftCharacters("Señor", 30), "Señor");
    EXPECT_EQ(runtime::LeftCharacters("Señor", 0), "");
}

TEST(CharactersLacking, EachOnce)
{
    EXPECT_EQ(runtime::CharactersLacking("Señor €? \x01"), "");
    EXPECT_EQ(runtime::CharactersLacking("Łódź Ł𝄞"), "Łź𝄞");
    runtime::UseCodePage(1250);
    EXPECT_EQ(runtime::CharactersLacking("Łódź ñ"), "ñ");
    runtime::UseCodePage(1252);
}

// In a record in UTF-8 a character can be several bytes.
TEST(EditedField, OfARecordInUtf8)
{
    constexpr auto kUtf8 = metadata::TextKind::Utf8;
    const struct {
        const char *name;
        std::string field, edited, want;
    } cases[] = {
        {"not touched", Z("桜\0の花"), "桜", Z("桜\0の花")},
        {"typed at the end", "桜の", "桜の花", "桜の花"},
        {"typed in the middle", "桜花", "桜の花", "桜の花"},
        {"taken out of the middle", "桜の花", "桜花", "桜花"},
        {"characters that share their first bytes", "😀😁", "😀😂", "😀😂"},
        {"characters that share their last byte", "éĩ", "éŨ", "éŨ"},
        {"of a sequence one part", "👩‍🎤", "👩", "👩"},
        {"right to left", "نسم", "نسم علينا", "نسم علينا"},
        {"what the code page lacks", "abc", "abŁc", "abŁc"},
        {"line ends keep their form", "一\r二\n三\r\n", "一\n二!\n三\n", "一\r二!\n三\r\n"},
        {"emptied", "桜", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(EditedField(c.field, c.edited, kUtf8), c.want);
    }
    EXPECT_EQ(ShownText(Z("é😀\0x"), kUtf8), "é😀");
}
