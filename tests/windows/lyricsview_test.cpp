// The text box of lyrics under real keys and a real mouse.
#include "platform/qt/theme.h"
#include "tests/windows/lyricsboxfixture.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace tests
{

namespace
{

class LyricsView : public LyricsBoxTest
{
};

TEST_F(LyricsView, TypingChangesTheBytesThereAndNoOthers)
{
    const std::string before = "One\r\nT\xE9st\xA0x\nThree\rFour\r\n"; // every kind of break
    box.SetText(before);
    EXPECT_EQ(Shown(), "One\nT\u00E9st x\nThree\nFour\n"); // the toolkit returns a usual blank
    PressKey("Down");
    PressKey("End");
    EXPECT_EQ(box.SelStart(), 11);
    TypeText("!");
    EXPECT_EQ(box.Text(), "One\r\nT\xE9st\xA0x!\nThree\rFour\r\n");
    PressKey("Enter");
    EXPECT_EQ(box.Text(), "One\r\nT\xE9st\xA0x!\r\n\nThree\rFour\r\n");
    PressKey("Backspace");
    PressKey("Backspace");
    EXPECT_EQ(box.Text(), before);
    PressKey("Ctrl+Home");
    PressKey("End");
    PressKey("Delete"); // the break is one key, two bytes
    EXPECT_EQ(box.Text(), "OneT\xE9st\xA0x\nThree\rFour\r\n");
    PressKey("Ctrl+Z");
    EXPECT_EQ(box.Text(), before);
    PressKey("Ctrl+A");
    TypeText("x");
    EXPECT_EQ(box.Text(), "x");
    PressKey("Ctrl+A");
    PressKey("Delete");
    EXPECT_EQ(box.Text(), "");
    TypeText("y");
    EXPECT_EQ(box.Text(), "y");
}

TEST_F(LyricsView, WhatTheCodePageLacksShowsAsItIsKept)
{
    box.SetText("ab\r\n");
    QGuiApplication::clipboard()->setText(QStringLiteral("\u20AC\u0416\U0001F600\u00E9\nz"));
    PressKey("Right");
    PressKey("Ctrl+V");
    EXPECT_EQ(box.Text(), "a\x80??\xE9\r\nzb\r\n");
    EXPECT_EQ(Shown(), "a\u20AC??\u00E9\nzb\n");
    TypeText("!"); // the caret is after the text that was inserted
    EXPECT_EQ(box.Text(), "a\x80??\xE9\r\nz!b\r\n");
}

TEST_F(LyricsView, BreaksThatMeetBecomeOne)
{
    box.SetText("a\rb\nc");
    box.Select(2, 1);
    PressKey("Delete");
    EXPECT_EQ(box.Text(), "a\r\nc");
    EXPECT_EQ(Shown(), "a\nc");
    PressKey("Ctrl+End");
    EXPECT_EQ(box.SelStart(), 4);
    TypeText("d");
    EXPECT_EQ(box.Text(), "a\r\ncd");
}

TEST_F(LyricsView, SelectionsGoBothWays)
{
    box.SetText("One\r\nTwo\r\nThree\r\n");
    box.Select(5, 3);
    EXPECT_EQ(Selected(), "Two");
    box.Select(9, 1); // the line feed of a break: the break
    EXPECT_EQ(Selected(), "|");
    EXPECT_EQ(box.SelStart(), 9);
    EXPECT_EQ(box.SelLength(), 1);
    PressKey("Home"); // the caret is after the break
    PressKey("Shift+End");
    EXPECT_EQ(box.SelStart(), 10);
    EXPECT_EQ(box.SelLength(), 5);
    PressKey("Shift+Right");
    EXPECT_EQ(box.SelLength(), 7);
    box.Select(15, -4); // a negative length selects nothing
    EXPECT_EQ(Selected(), "");
    box.Select(100, 3);
    EXPECT_EQ(box.SelStart(), 17);
}

// When logic changes the text because of a key, the view shows that while the key is still handled.
TEST_F(LyricsView, LogicMayAnswerAnEdit)
{
    bool answering = false;
    box.textChanged = [&] {
        if (answering || box.Text().find('[') == std::string::npos)
            return;
        answering = true;
        box.SetText("taken\r\n" + box.Text().substr(0, box.Text().find('[')));
        answering = false;
    };
    TypeText("ab[c");
    EXPECT_EQ(box.Text(), "ctaken\r\nab");
    EXPECT_EQ(Shown(), "ctaken\nab");
}

TEST_F(LyricsView, TheHighlightStaysBrightInTheBackground)
{
    for (const bool dark : {true, false}) {
        platform::qt::ApplyPalette(dark);
        Settle();
        const QPalette colours = view->palette();
        for (const auto role : {QPalette::Highlight, QPalette::HighlightedText})
            EXPECT_EQ(colours.color(QPalette::Inactive, role),
                      colours.color(QPalette::Active, role));
    }
}

TEST_F(LyricsView, TheHighlightScrollsInSteps)
{
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += "line " + std::to_string(1000 + i) + "\r\n";
    box.SetText(text);
    QScrollBar *bar = view->verticalScrollBar();
    EXPECT_EQ(bar->value(), 0);
    int before = 0;
    for (int i = 0; i < 200; ++i) {
        box.Select(i * 11, 9);
        Settle();
        EXPECT_LE(bar->value() - before, 2) << "line " << i;
        const QRect line = view->cursorRect();
        EXPECT_GE(line.top(), 0) << "line " << i;
        EXPECT_LE(line.bottom(), view->viewport()->height()) << "line " << i;
        if (i > 20 && i < 190) {
            EXPECT_LT(line.bottom(), view->viewport()->height() - line.height()) << "line " << i;
        }
        before = bar->value();
    }
    box.Select(0, 9); // back to the first line
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(LyricsView, AMegabyte)
{
    std::string text;
    for (int i = 0; text.size() < 1'000'000; ++i)
        text += "a line of the lyrics, number " + std::to_string(i) + "\r\n";
    box.SetText(text);
    const auto size = static_cast<int>(text.size());
    QElapsedTimer clock;
    clock.start();
    box.Select(size / 2, 20);
    TypeText("x");
    box.Replace(size / 3, 0, "[00:10]");
    EXPECT_LT(clock.elapsed(), 1500);
    EXPECT_EQ(box.Text().size(), text.size() - 20 + 8);
    EXPECT_EQ(Shown().size(), box.Text().size() - static_cast<std::size_t>(std::count(
                                                      box.Text().begin(), box.Text().end(), '\r')));
}

TEST_F(LyricsView, LetsGoOfTheBox)
{
    box.SetText("One\r\n");
    delete view;
    EXPECT_FALSE(box.changed || box.selectionChanged || box.focusWanted);
    EXPECT_EQ(box.Text(), "One\r\n");
}

TEST_F(LyricsView, FollowsItsControl)
{
    box.SetPlace({150, 300, 3000, 1500});
    EXPECT_EQ(view->geometry(), QRect(10, 20, 200, 100));
    box.SetEnabled(false);
    box.SetEnabled(true); // as parsing does: the focus stays
    Settle();
    EXPECT_TRUE(view->hasFocus());
    box.SetEnabled(false);
    EXPECT_TRUE(WaitUntil([this] { return !view->isEnabled(); }));
    box.SetEnabled(true);
    EXPECT_TRUE(WaitUntil([this] { return view->isEnabled() && view->hasFocus(); }));
}

} // namespace

} // namespace tests
