// The lyrics windows as a user works in them, by mouse and keys: following a song, setting times by
// ear, testing them, saving, closing.
#include "lyrics/drafts.h"
#include "lyrics/frmLyricsView.h"
#include "lyrics/install.h"
#include "platform/qt/application.h"
#include "platform/qt/qtdesktop.h"
#include "platform/qt/qtwindows.h"
#include "runtime/error.h"
#include "shell/startup/startup.h"
#include "tests/lyrics/lyricsfixture.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QWindow>
#include <array>
#include <cstdio>

namespace tests
{

namespace
{

using lyrics::LyricsForm;

// Lines "[00:01]line 1", one a second.
std::string MarkedLines(int count)
{
    std::string text;
    for (int i = 1; i <= count; ++i) {
        std::array<char, 40> line{};
        std::snprintf(line.data(), line.size(), "[%02d:%02d]line %d\r\n", i / 60, i % 60, i);
        text += line.data();
    }
    return text;
}

// How many pixels of the highlight the window shows.
int HighlightedPixels(QWidget &window, const lyrics::LyricsView &view)
{
    const QColor wanted = view.palette().color(QPalette::Active, QPalette::Highlight);
    const QImage shown = Screenshot(window);
    int found = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            found += shown.pixelColor(x, y).rgb() == wanted.rgb() ? 1 : 0;
    return found;
}

class FrmLyrics : public LyricsSongs
{
protected:
    FrmLyrics()
    {
        platform::TheMachine().windows = &windows;
        desktop.doEvents = [] { QApplication::processEvents(); };
        lyrics::RegisterLyricsView();
    }
    ~FrmLyrics() override
    {
        lyrics::ForgetForms();
        Settle(); // closed windows are deleted by the next event
        platform::TheMachine().windows = nullptr;
    }

    std::vector<LyricsForm *> Forms() const
    {
        std::vector<LyricsForm *> forms;
        for (ui::Form *form : host.Forms())
            forms.push_back(dynamic_cast<LyricsForm *>(form));
        return forms;
    }
    QWidget &WindowOf(const LyricsForm &form) const { return *host.WindowOf(form); }
    lyrics::LyricsView &ViewOf(const LyricsForm &form) const
    {
        return *dynamic_cast<lyrics::LyricsView *>(Find(WindowOf(form), "Lyrics"));
    }
    static std::string Shown(const lyrics::LyricsView &view)
    {
        return view.toPlainText().toStdString();
    }

    // The window in which the times of a song with these lyrics are set, with the keyboard.
    LyricsForm &Setting(const std::string &text)
    {
        lyrics::OpenTimeSetting(WriteSong("song.mp3", text));
        LyricsForm &form = *Forms().back();
        ShowAndActivate(WindowOf(form));
        EXPECT_TRUE(WaitUntil([&] { return ViewOf(form).hasFocus(); }));
        return form;
    }

    platform::qt::QtWindows windows;
    mutable ui::qt::FormWindows host;
};

TEST_F(FrmLyrics, TheLineThatIsSungIsBrightInTheBackground)
{
    lyrics::ShowLyrics("Artist - Title", MarkedLines(60));
    LyricsForm &form = *Forms()[0];
    lyrics::LyricsView &view = ViewOf(form);
    EXPECT_EQ(WindowOf(form).windowTitle(), QStringLiteral("Artist - Title - Lyrics"));
    QWidget other;
    other.setGeometry(900, 500, 300, 200);
    ShowAndActivate(other);
    for (const int second : {3, 4, 40, 41, 7}) {
        Play(second);
        const std::string line = "line " + std::to_string(second);
        ASSERT_TRUE(WaitUntil([&] { return Selected(form) == line; })) << line;
        EXPECT_EQ(view.textCursor().selectedText().toStdString(), line);
        EXPECT_TRUE(view.viewport()->rect().contains(view.cursorRect())) << line;
        EXPECT_FALSE(WindowOf(form).isActiveWindow());
        EXPECT_GT(HighlightedPixels(WindowOf(form), view), 200) << line;
    }
    // Between two marks the last line stays, until the user selects something else.
    Play(700);
    AwaitTicks(form.showTimes, 3);
    EXPECT_EQ(Selected(form), "line 7");
    WindowOf(form).activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return WindowOf(form).isActiveWindow(); }));
    view.setFocus();
    PressKey("Ctrl+Home");
    PressKey("Shift+Right");
    EXPECT_TRUE(WaitUntil([&] { return Selected(form) == "l"; }));
    Play(8);
    EXPECT_TRUE(WaitUntil([&] { return Selected(form) == "line 8"; }));
}

TEST_F(FrmLyrics, OneKeyALineForTwoHundredLines)
{
    std::string text = "A title\r\n";
    std::string want = text;
    for (int i = 0; i < 200; ++i) {
        std::array<char, 16> mark{};
        std::snprintf(mark.data(), mark.size(), "[%02d:%02d]", i * 3 / 60, i * 3 % 60);
        const std::string line = "line " + std::to_string(i) + "\r\n";
        text += line;
        want += mark.data() + line;
    }
    LyricsForm &form = Setting(text);
    lyrics::LyricsView &view = ViewOf(form);
    PressKey("Down");
    for (int i = 0; i < 200; ++i) {
        Play(i * 3);
        PressKey("F9"); // at once, without a tick between
        ASSERT_TRUE(view.hasFocus());
    }
    EXPECT_EQ(form.Lyrics.Text(), want);
    EXPECT_TRUE(view.viewport()->rect().intersects(view.cursorRect()));
    PressKey("Ctrl+End");
    PressKey("Enter"); // is a line break, and presses nothing
    EXPECT_EQ(form.Lyrics.Text(), want + "\r\n");
    PressKey("Ctrl+Z");
    EXPECT_EQ(form.Lyrics.Text(), want);
}

TEST_F(FrmLyrics, AKeyThatIsHeldDownSetsOneMark)
{
    LyricsForm &form = Setting("One\r\nTwo\r\nThree\r\n");
    PressKey("Down");
    Play(5);
    for (const bool repeated : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F9, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(QApplication::focusWidget(), &press);
    }
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n[00:05]Two\r\nThree\r\n");
}

TEST_F(FrmLyrics, TheMouseSetsAMarkAndGivesTheKeyboardBack)
{
    LyricsForm &form = Setting("One\r\nTwo\r\nThree\r\n");
    lyrics::LyricsView &view = ViewOf(form);
    PressKey("Down");
    Play(61.5);
    Click(*Find(WindowOf(form), "cmdSetIt"));
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n[01:02]Two\r\nThree\r\n");
    EXPECT_TRUE(WaitUntil([&] { return view.hasFocus(); }));
    EXPECT_EQ(view.textCursor().selectedText(), QString(QChar(QChar::ParagraphSeparator)));
}

TEST_F(FrmLyrics, AllModesByKeys)
{
    const std::string marked = "[00:01]One\r\n[00:02]Two\r\n";
    LyricsForm &form = Setting(marked);
    QWidget &window = WindowOf(form);
    lyrics::LyricsView &view = ViewOf(form);
    const auto *test = Find<QPushButton>(window, "cmdTest");
    const auto *pause = Find<QPushButton>(window, "cmdPause");
    EXPECT_FALSE(Find(window, "cmdSetTimes")->isEnabled());
    EXPECT_EQ(test->accessibleName(), QStringLiteral("Test the times"));
    EXPECT_TRUE(test->text().isEmpty()) << "a picture in place of its symbol";
    EXPECT_FALSE(test->icon().isNull());

    PressKey("Tab");
    EXPECT_TRUE(Find(window, "cmdSetIt")->hasFocus());
    PressKey("Tab");
    EXPECT_TRUE(test->hasFocus());
    const QImage testPicture = test->icon().pixmap(20).toImage();
    PressKey("Space");
    ASSERT_TRUE(WaitUntil([&] { return Shown(view) == "One\nTwo\n"; }));
    EXPECT_TRUE(view.hasFocus());
    EXPECT_NE(test->icon().pixmap(20).toImage(), testPicture);
    Play(2);
    EXPECT_TRUE(WaitUntil([&] { return Selected(form) == "Two"; }));

    for (const char *key : {"Tab", "Tab", "Tab"})
        PressKey(key);
    EXPECT_TRUE(pause->hasFocus());
    PressKey("Space");
    ASSERT_TRUE(WaitUntil([&] { return Shown(view) == "[00:01]One\n[00:02]Two\n"; }));
    EXPECT_EQ(pause->accessibleName(), QStringLiteral("Continue with the test"));
    Play(1);
    EXPECT_FALSE(form.showTimes.Enabled()) << "a pause highlights nothing";
    EXPECT_NE(Selected(form), "One");
    pause->parentWidget()->setFocus();
    Click(*Find(window, "cmdPause"));
    ASSERT_TRUE(WaitUntil([&] { return Shown(view) == "One\nTwo\n"; }));
    EXPECT_EQ(pause->accessibleName(), QStringLiteral("Pause the test"));
    EXPECT_TRUE(WaitUntil([&] { return Selected(form) == "One"; }));

    Click(*Find(window, "cmdTest"));
    EXPECT_TRUE(WaitUntil([&] { return Shown(view) == "[00:01]One\n[00:02]Two\n"; }));
    EXPECT_EQ(form.Lyrics.Text(), marked);
    EXPECT_EQ(form.cmdTest.Caption(), "<") << "it never returns";
}

TEST_F(FrmLyrics, MarksThatCannotBeReadAreReportedOnceOverAWindowThatWorks)
{
    auto &application = static_cast<platform::qt::Application &>(*QApplication::instance());
    const auto before = std::exchange(application.showError, shell::ShowRuntimeError);
    const struct {
        std::string text, box, left;
    } songs[] = {
        {"[0:01]One\r\n[0:01]Two\r\n", "Run-time error '457'", "One\r\nTwo\r\n"},
        {"One]\r\n[0:02]Two\r\n", "Run-time error '5'", "One]\r\n[0:02]Two\r\n"},
        {std::string(40'000, 'x') + "\r\n[0:01]One\r\n", "Run-time error '6'",
         std::string(40'000, 'x') + "\r\n[0:01]One\r\n"},
    };
    for (const auto &song : songs) {
        desktop.ExpectBox(song.box);
        const std::size_t boxesBefore = desktop.boxes.size();
        lyrics::ShowLyrics("Song", song.text);
        EXPECT_EQ(desktop.boxes.size(), boxesBefore) << "not within the tick that shows the lyrics";
        ASSERT_TRUE(WaitUntil([&] { return desktop.boxes.size() == boxesBefore + 1; })) << song.box;
        LyricsForm &form = *Forms()[0];
        Play(1);
        Settle();
        EXPECT_FALSE(form.tmrReport.Enabled());
        EXPECT_EQ(desktop.boxes.size(), boxesBefore + 1);
        EXPECT_EQ(form.Lyrics.Text(), song.left);
        EXPECT_TRUE(ViewOf(form).isEnabled());
        EXPECT_TRUE(Find(WindowOf(form), "cmdSetTimes")->isEnabled());
        EXPECT_FALSE(form.showTimes.Enabled());
    }
    lyrics::ShowLyrics("Next", MarkedLines(3));
    Play(3);
    EXPECT_TRUE(WaitUntil([&] { return Selected(*Forms()[0]) == "line 3"; }));
    application.showError = before;
}

TEST_F(FrmLyrics, TwoWindowsSideBySide)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    player.SetPlaylist("#EXTM3U\r\n" + song + "\r\n");
    lyrics::ShowLyrics("Song", kTwoLines);
    Click(*Find(WindowOf(*Forms()[0]), "cmdSetTimes"));
    ASSERT_TRUE(WaitUntil([&] { return Forms().size() == 2; }));
    LyricsForm &following = *Forms()[0];
    LyricsForm &setting = *Forms()[1];
    EXPECT_TRUE(WaitUntil([&] { return ViewOf(setting).hasFocus(); }));
    EXPECT_TRUE(WindowOf(following).isVisible());
    EXPECT_EQ(Shown(ViewOf(setting)), "[00:10]One\n[00:42]Two\n");
    EXPECT_EQ(Shown(ViewOf(following)), "One\nTwo\n");
    Play(42);
    EXPECT_TRUE(WaitUntil([&] { return Selected(following) == "Two"; }));
    EXPECT_EQ(Selected(setting), "");

    // The next song begins while the user types: the keyboard stays with its window.
    const QPoint place = WindowOf(following).pos();
    PressKey("Ctrl+End");
    TypeText("Th");
    lyrics::ShowLyrics("Next", "[0:42]Next\r\n");
    EXPECT_TRUE(Stays([&] { return WindowOf(setting).isActiveWindow(); }, 100));
    TypeText("ree");
    EXPECT_EQ(setting.Lyrics.Text(), std::string(kTwoLines) + "Three");
    EXPECT_TRUE(WaitUntil([&] { return Selected(following) == "Next"; }));
    EXPECT_EQ(WindowOf(following).pos(), place);

    // The one in which times are set clears the flag when it closes; the other one stays and is
    // filled again.
    desktop.ExpectBox("not saved", platform::Answer::Discard);
    PressKey("Escape");
    ASSERT_TRUE(WaitUntil([&] { return Forms().size() == 1; }));
    EXPECT_FALSE(player::LyricsWindowOpen);
    lyrics::ShowLyrics("Again", "[0:42]Again\r\n");
    EXPECT_TRUE(WaitUntil([&] { return Selected(*Forms()[0]) == "Again"; }));
    EXPECT_TRUE(player::LyricsWindowOpen);
}

TEST_F(FrmLyrics, ANewWindowDoesNotTakeTheFocus)
{
    QWidget other;
    ShowAndActivate(other);
    lyrics::ShowLyrics("Song", kTwoLines);
    EXPECT_TRUE(WaitUntil([&] { return WindowOf(*Forms()[0]).windowHandle()->isExposed(); }));
    EXPECT_TRUE(Stays([&] { return other.isActiveWindow(); }, 200));
    EXPECT_FALSE(WindowOf(*Forms()[0]).isActiveWindow());
}

// The NUL that many programs write after a text is not shown as a box and does not end the title.
TEST_F(FrmLyrics, WhatHasNoShapeShowsAsABlankAndIsKept)
{
    const std::string text("One\r\nT\x01wo\0", 10);
    lyrics::ShowLyrics(std::string("Artist\0 - Title\0", 16), text);
    EXPECT_EQ(WindowOf(*Forms()[0]).windowTitle(), QStringLiteral("Artist - Title - Lyrics"));
    EXPECT_EQ(Shown(ViewOf(*Forms()[0])), "One\nT wo ");
    LyricsForm &form = Setting(text);
    EXPECT_EQ(form.Lyrics.Text(), text);
    PressKey("Down");
    Play(3);
    PressKey("F9");
    EXPECT_EQ(form.Lyrics.Text(), std::string("One\r\n[00:03]T\x01wo\0", 17));
    EXPECT_EQ(Shown(ViewOf(form)), "One\n[00:03]T wo ");
}

// --- closing, with the real box

class FrmLyricsClosing : public FrmLyrics
{
protected:
    FrmLyricsClosing() { platform::TheMachine().desktop = &m_boxes; }
    ~FrmLyricsClosing() override { platform::TheMachine().desktop = &desktop; }

    // The user closes the window and presses a key in the box that asks.
    void CloseAndPress(LyricsForm &form, const char *key)
    {
        WhenModal([key](QWidget &box) {
            EXPECT_EQ(box.objectName(), QStringLiteral("MessageBox"));
            PressKey(key);
        });
        WindowOf(form).close();
        Settle();
    }

private:
    platform::qt::QtDesktop m_boxes;
};

TEST_F(FrmLyricsClosing, AsksWhatBecomesOfUnsavedMarks)
{
    LyricsForm &form = Setting("One\r\nTwo\r\n");
    const std::string song = form.FileName;
    PressKey("Down");
    Play(5);
    PressKey("F9");
    const std::string marked = "One\r\n[00:05]Two\r\n";
    EXPECT_TRUE(WaitUntil([&] { return lyrics::ReadDraft(song) == marked; }));
    CloseAndPress(form, "Escape");
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_TRUE(WindowOf(form).isVisible());
    EXPECT_EQ(form.Lyrics.Text(), marked);

    CloseAndPress(form, "Alt+D");
    ASSERT_TRUE(WaitUntil([&] { return Forms().empty(); }));
    EXPECT_EQ(LyricsIn(song), "One\r\nTwo\r\n");
    EXPECT_EQ(lyrics::ReadDraft(song), marked);

    // The next time it is offered; Save in the question writes it, tested or not.
    WhenModal([](QWidget &) { PressKey("Alt+Y"); });
    lyrics::OpenTimeSetting(song);
    LyricsForm &again = *Forms().at(0);
    EXPECT_EQ(again.Lyrics.Text(), marked);
    CloseAndPress(again, "Alt+S");
    EXPECT_TRUE(WaitUntil([&] { return Forms().empty(); }));
    EXPECT_EQ(LyricsIn(song), marked);
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt);
}

TEST_F(FrmLyricsClosing, WithoutChangesNothingIsAsked)
{
    LyricsForm &form = Setting("One\r\nTwo\r\n");
    WindowOf(form).close();
    EXPECT_TRUE(WaitUntil([&] { return Forms().empty(); }));
}

TEST_F(FrmLyricsClosing, DuringATestTheMarkedTextIsSaved)
{
    LyricsForm &form = Setting("One\r\n");
    const std::string song = form.FileName;
    PressKey("Ctrl+End");
    Play(9);
    PressKey("F9");
    const std::string marked = form.Lyrics.Text();
    Click(*Find(WindowOf(form), "cmdTest"));
    ASSERT_TRUE(WaitUntil([&] { return form.Lyrics.Text() != marked; }));
    CloseAndPress(form, "Return"); // Save is what Enter presses
    EXPECT_TRUE(WaitUntil([&] { return Forms().empty(); }));
    EXPECT_EQ(LyricsIn(song), marked);
}

} // namespace

} // namespace tests
