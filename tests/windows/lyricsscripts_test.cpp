// The text box of lyrics with characters of several bytes and of two units, under real keys.
#include "runtime/text.h"
#include "runtime/utf8.h"
#include "tests/windows/lyricsboxfixture.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QTextBlock>
#include <array>
#include <random>

namespace tests
{

namespace
{

class LyricsScripts : public LyricsBoxTest
{
protected:
    LyricsScripts() : LyricsBoxTest(metadata::TextKind::Utf8) {}

    // The shown text with the line ends of the box, which are two characters.
    std::string ShownAsKept() const { return runtime::Replace(Shown(), "\n", "\r\n"); }
    // The selected text, as the box has it.
    std::string Noted() const
    {
        const std::size_t start = box.OffsetOf(box.SelStart());
        return box.Text().substr(start, box.OffsetOf(box.SelStart() + box.SelLength()) - start);
    }
    static void Paste(const std::string &text)
    {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
        PressKey("Ctrl+V");
    }
};

TEST_F(LyricsScripts, ALineIsHighlightedWhole)
{
    const std::array<std::string, 5> lines = {"さくら 桜", "نسم علينا", "👩‍🎤 😀 é",
                                              "Ночь (مرحبا) end", "שלום 😀"};
    std::string text;
    for (const std::string &line : lines)
        text += line + "\r\n";
    box.SetText(text);
    EXPECT_EQ(ShownAsKept(), text);
    std::size_t offset = 0;
    for (const std::string &line : lines) {
        const int start = box.PositionAt(offset);
        box.Select(start, static_cast<int>(runtime::CountCharacters(line)));
        EXPECT_EQ(Selected(), line);
        EXPECT_EQ(Noted(), line);
        offset += line.size() + 2;
    }
    KeepScreenshot(window, "lyrics-scripts");
}

TEST_F(LyricsScripts, KeysMoveAndDeleteWholeCharacters)
{
    box.SetText("😀é桜\r\n👩‍🎤x\r\n");
    PressKey("Right");
    EXPECT_EQ(box.SelStart(), 1) << "a surrogate pair is one";
    PressKey("Shift+End");
    EXPECT_EQ(Noted(), "é桜");
    PressKey("Home");
    PressKey("Delete");
    EXPECT_EQ(box.Text(), "é桜\r\n👩‍🎤x\r\n");
    PressKey("Ctrl+Z");
    EXPECT_EQ(box.Text(), "😀é桜\r\n👩‍🎤x\r\n");
    PressKey("Ctrl+End");
    PressKey("Up");
    PressKey("End");
    PressKey("Backspace");
    EXPECT_EQ(box.Text(), "😀é桜\r\n👩‍🎤\r\n");
    Paste("نسم😀\nΩ");
    EXPECT_EQ(box.Text(), "😀é桜\r\n👩‍🎤نسم😀\r\nΩ\r\n");
    EXPECT_EQ(ShownAsKept(), box.Text());
}

// Two characters that share one of their two units: the document must never contain half of one.
TEST_F(LyricsScripts, ATextIsReplacedByOneThatSharesUnits)
{
    for (const char *text : {"a😀b", "a😁b", "a🎵b", "a😀😁b", "a😁b", "😀", "🀀", "ab", "a😀b"}) {
        box.SetText(text);
        EXPECT_EQ(ShownAsKept(), text);
    }
    box.SetText("😀\r\n😀\r\n");
    box.Replace(3, 0, "[00:01]"); // as the timing tool does
    EXPECT_EQ(ShownAsKept(), "😀\r\n[00:01]😀\r\n");
    box.Select(11, 1);
    EXPECT_EQ(Noted(), "\r");
}

// Whatever keys are pressed: the text of the box is what the view shows, and it is valid UTF-8.
TEST_F(LyricsScripts, AnyKeysKeepBoxAndViewAlike)
{
    std::mt19937 random(20261122);
    constexpr std::array<const char *, 12> kKeys = {
        "Left",  "Right",      "Up",   "Down",       "Backspace", "Delete",
        "Enter", "Shift+Left", "Home", "Shift+Down", "End",       "Ctrl+Z"};
    constexpr std::array<const char *, 7> kTexts = {"😀", "👩‍🎤", "نسم", "桜\n花",
                                                    "é", "[00:01]",     "𝄞a"};
    box.SetText("さくら\r\n😀😁 نسم\r\n👨‍👩‍👧‍👦\r\n");
    for (int step = 0; step < 250; ++step) {
        if (random() % 3 == 0)
            Paste(kTexts[random() % kTexts.size()]);
        else
            PressKey(kKeys[random() % kKeys.size()]);
        ASSERT_EQ(ShownAsKept(), box.Text()) << "step " << step;
        ASSERT_TRUE(runtime::IsUtf8(box.Text())) << "step " << step;
        const QString selected = view->textCursor().selectedText();
        ASSERT_EQ(runtime::Replace(Noted(), "\r\n", "\n"),
                  QString(selected).replace(QChar::ParagraphSeparator, u'\n').toStdString())
            << "step " << step;
    }
}

} // namespace

} // namespace tests
