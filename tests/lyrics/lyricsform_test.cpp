#include "lyrics/drafts.h"
#include "lyrics/lyricsform.h"
#include "tests/lyrics/lyricsfixture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

using tests::kPause;
using tests::kPlay;
using tests::kStop;

namespace
{

using lyrics::LyricsForm;
using tests::Commands;
using tests::Enqueued;
using tests::kTwoLines;
using Lines = std::vector<std::string>;

using SettingTimes = tests::LyricsFormFixture;

TEST_F(SettingTimes, SetTimesPlaysTheSongFromItsBeginning)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    lyrics::SetTimes(form, song);
    EXPECT_TRUE(form.Visible());
    EXPECT_EQ(form.Title(), "Setting Times");
    EXPECT_EQ(form.FileName, song);
    EXPECT_TRUE(form.SettingTimes);
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    EXPECT_FALSE(form.Times.has_value());
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_FALSE(form.cmdSetTimes.Enabled());
    EXPECT_TRUE(form.Lyrics.Enabled());
    EXPECT_EQ(Commands(player), (Lines{kStop, Enqueued(song), kPlay}));
    EXPECT_FALSE(form.busy);
    EXPECT_FALSE(lyrics::HasUnsavedMarks(form));
}

TEST_F(SettingTimes, SetIt)
{
    const struct {
        const char *name;
        std::string text;
        int caret;
        double seconds;
        std::string want;
        int start;
        int length;
    } cases[] = {
        {"in the third line", "a\r\nb\r\nccc\r\nd", 8, 65, "a\r\nb\r\n[01:05]ccc\r\nd", 17, 1},
        {"at its start", "a\r\nb\r\nccc\r\nd", 6, 65, "a\r\nb\r\n[01:05]ccc\r\nd", 17, 1},
        {"at its end", "a\r\nb\r\nccc\r\nd", 9, 65, "a\r\nb\r\n[01:05]ccc\r\nd", 17, 1},
        {"on the line break before it", "a\r\nb\r\nccc\r\nd", 5, 65, "a\r\nb\r\n[01:05]ccc\r\nd",
         17, 1},
        {"at the very start", "One\r\nTwo", 0, 1, "O[00:01]ne\r\nTwo", 11, 1},
        {"in the first line", "One\r\nTwo", 2, 1, "O[00:01]ne\r\nTwo", 11, 1},
        {"in the last line", "One\r\nTwo", 6, 1, "One\r\n[00:01]Two", 15, 0},
        {"at the end of the text", "One\r\nTwo", 8, 1, "One\r\n[00:01]Two", 15, 0},
        {"in an empty line", "One\r\n\r\nTwo", 5, 1, "One\r\n[00:01]\r\nTwo", 13, 1},
        {"in an empty text", "", 0, 1, "[00:01]", 7, 0},
        {"in one character", "x", 0, 1, "x[00:01]", 8, 0},
        {"behind a line feed alone", "One\nTwo\n", 6, 1, "O[00:01]ne\nTwo\n", 15, 0},
        {"before another mark", "a\r\n[00:09]b\r\n", 4, 3, "a\r\n[00:03][00:09]b\r\n", 19, 1},
        {"rounded", "a\r\nb\r\n", 3, 61.5, "a\r\n[01:02]b\r\n", 12, 1},
        {"over a hundred minutes", "a\r\nb\r\n", 3, 6610, "a\r\n[10:10]b\r\n", 12, 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LyricsForm one;
        Setting(one, "");
        one.Lyrics.SetText(c.text);
        one.Lyrics.NoteSelection(c.caret, 0);
        int focused = 0;
        one.Lyrics.focusWanted = [&focused] { ++focused; };
        Play(c.seconds);
        one.cmdSetIt.Click();
        EXPECT_EQ(one.Lyrics.Text(), c.want);
        EXPECT_EQ(one.Lyrics.SelStart(), c.start);
        EXPECT_EQ(one.Lyrics.SelLength(), c.length);
        EXPECT_EQ(focused, 1);
    }
}

TEST_F(SettingTimes, TwoHundredLinesInOneGo)
{
    std::string text = "Title\r\n";
    std::string want = "Title\r\n";
    for (int i = 0; i < 200; ++i) {
        const std::string line = "line " + std::to_string(i) + "\r\n";
        std::array<char, 16> mark{};
        std::snprintf(mark.data(), mark.size(), "[%02d:%02d]", i * 3 / 60, i * 3 % 60);
        text += line;
        want += mark.data() + line;
    }
    Setting(form, text);
    form.Lyrics.NoteSelection(7, 0);
    for (int i = 0; i < 200; ++i) {
        Play(i * 3);
        form.cmdSetIt.Click();
    }
    EXPECT_EQ(form.Lyrics.Text(), want);
    form.cmdTest.Click();
    EXPECT_EQ(form.Lyrics.Text(), text);
    EXPECT_EQ(form.Times->size(), 200U);
}

// --- testing

TEST_F(SettingTimes, ATest)
{
    const std::string song = Setting(form, kTwoLines);
    EXPECT_FALSE(form.cmdPause.Enabled());
    form.cmdTest.Click();
    EXPECT_EQ(form.cmdTest.Caption(), "<");
    EXPECT_EQ(form.cmdTest.ToolTip(), "Stop the test");
    EXPECT_TRUE(form.cmdPause.Enabled());
    EXPECT_EQ(form.MarkedText, kTwoLines);
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_TRUE(form.showTimes.Enabled());
    EXPECT_FALSE(form.cmdSetTimes.Enabled());
    EXPECT_EQ(Commands(player), (Lines{kStop, Enqueued(song), kPlay}));
    Play(42);
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "Two");

    form.cmdTest.Click(); // stops it; nothing is sent to the player
    EXPECT_EQ(form.cmdTest.Caption(), "<");
    EXPECT_EQ(form.cmdTest.ToolTip(), "Test the times");
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_FALSE(form.Times.has_value());
    EXPECT_TRUE(form.cmdPause.Enabled());
    EXPECT_EQ(Commands(player), Lines());

    form.Lyrics.SetText("typed since");
    form.cmdTest.Click(); // the same once more, no new test
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_EQ(Commands(player), Lines());
}

TEST_F(SettingTimes, ATestOfATextWithoutMarks)
{
    Setting(form, "One\r\n");
    form.cmdTest.Click();
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n");
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_EQ(form.Times->size(), 0U);
}

TEST_F(SettingTimes, PauseAndContinue)
{
    const std::string song = Setting(form, kTwoLines);
    form.cmdPause.Click(); // before the first test: nothing
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    form.cmdTest.Click();
    player.Received();
    form.cmdPause.Click();
    EXPECT_EQ(form.cmdPause.Caption(), "4");
    EXPECT_EQ(form.cmdPause.ToolTip(), "Continue with the test");
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_EQ(Commands(player), Lines{kPause});

    form.Lyrics.SetText("[00:05]Other\r\n");
    form.cmdPause.Click(); // a new test, with the current text of the box
    EXPECT_EQ(form.cmdPause.Caption(), ";");
    EXPECT_EQ(form.cmdPause.ToolTip(), "Pause the test");
    EXPECT_EQ(form.MarkedText, "[00:05]Other\r\n");
    EXPECT_EQ(form.Lyrics.Text(), "Other\r\n");
    EXPECT_EQ(form.Times->size(), 1U);
    EXPECT_TRUE(form.showTimes.Enabled());
    EXPECT_EQ(Commands(player), (Lines{Enqueued(song), kPlay}));
}

TEST_F(SettingTimes, ATestThatFailsLosesNothing)
{
    const std::string twice = "[0:01]One\r\n[0:01]Two\r\n";
    const std::string song = Setting(form, "");
    form.Lyrics.SetText(twice);
    EXPECT_THROW(form.cmdTest.Click(), runtime::RuntimeError);
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_EQ(form.MarkedText, twice);
    EXPECT_TRUE(form.Lyrics.Enabled());
    EXPECT_TRUE(form.cmdTest.Enabled());
    EXPECT_TRUE(form.cmdPause.Enabled());
    EXPECT_FALSE(form.cmdSetTimes.Enabled());
    EXPECT_FALSE(form.showTimes.Enabled());
    EXPECT_FALSE(form.busy);
    EXPECT_EQ(Commands(player), Lines{kStop});
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), twice);
    EXPECT_EQ(tests::LyricsIn(song), "");
    form.cmdTest.Click();
    EXPECT_EQ(form.Lyrics.Text(), twice);
}

TEST_F(SettingTimes, AFileThatThePlayerRefuses)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    player.refusesFiles = true;
    EXPECT_THROW(lyrics::SetTimes(form, song), runtime::RuntimeError);
    EXPECT_FALSE(form.busy);
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
    EXPECT_THROW(form.cmdTest.Click(), runtime::RuntimeError);
    EXPECT_FALSE(form.busy);
    EXPECT_EQ(lyrics::MarksMade(form), kTwoLines);
}

} // namespace
