// Text for a terminal of another character set than UTF-8.
#include "platform/terminal/terminaltext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using platform::terminal::CharacterSetOf;
using platform::terminal::TextIn;

TEST(TerminalText, CharacterSetOfALocale)
{
    const struct {
        const char *locale, *want;
    } cases[] = {
        {"ru_RU.KOI8-R", "KOI8-R"},
        {"de_DE.ISO-8859-15@euro", "ISO-8859-15"},
        {"ja_JP.eucJP", "eucJP"},
        {"en_US.UTF-8", ""},
        {"en_US.utf8", ""},
        {"de_DE", ""},
        {"C", ""},
        {"POSIX", ""},
        {"", ""},
        {"x.", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(CharacterSetOf(c.locale), c.want) << c.locale;
}

TEST(TerminalText, Table)
{
    const struct {
        const char *name, *set;
        std::string text, want;
    } cases[] = {
        {"Cyrillic", "KOI8-R", "Кино.mp3\n", "\xEB\xC9\xCE\xCF.mp3\n"},
        {"what the set lacks", "KOI8-R", "К 桜 😀!", "\xEB ? ?!"},
        {"Western", "ISO-8859-1", "Señor", "Se\xF1or"},
        {"several bytes a character", "EUC-JP", "桜", "\xBA\xF9"},
        {"UTF-8", "", "桜 😀", "桜 😀"},
        {"an unknown set", "no such set", "桜", "桜"},
        {"a name that is in the set already", "ISO-8859-1", "Se\xF1or", "Se\xF1or"},
        {"both", "ISO-8859-1", "\xF1 ñ", "\xF1 \xF1"},
        {"nothing", "KOI8-R", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(TextIn(c.set, c.text), c.want);
    }
}

// Two of the bytes of these letters end or begin a control sequence of an eight-bit terminal.
TEST(TerminalText, NoByteControlsTheTerminal)
{
    for (const char *set : {"ISO-8859-1", "ISO-8859-5", "EUC-JP"}) {
        const std::string shown = TextIn(set, "ЛЛ2J 桜 О");
        EXPECT_TRUE(std::none_of(shown.begin(), shown.end(), [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return byte >= 0x80 && byte < 0xA0;
        })) << set;
    }
}
