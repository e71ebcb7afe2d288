#include "lyrics/lyricsform.h"
#include "runtime/error.h"
#include "tests/lyrics/lyricsfixture.h"

#include <gtest/gtest.h>

namespace
{

using lyrics::LyricsData;
using lyrics::LyricsForm;
using tests::kTwoLines;
using Lines = std::vector<std::string>;

using FollowLyrics = tests::LyricsFormFixture;

TEST_F(FollowLyrics, LoadsInBothModes)
{
    for (const bool setting : {false, true}) {
        LyricsForm loaded;
        loaded.SettingTimes = setting;
        player::LyricsWindowOpen = false;
        ui::Show(loaded);
        EXPECT_TRUE(player::LyricsWindowOpen);
        EXPECT_EQ(loaded.cmdSetTimes.Enabled(), !setting);
        for (const ui::Button *button :
             {&loaded.cmdSetIt, &loaded.cmdSave, &loaded.cmdTest, &loaded.cmdPause})
            EXPECT_EQ(button->Visible(), setting) << button->ToolTip();
        EXPECT_EQ(loaded.Times.has_value(), !setting);
        EXPECT_FALSE(loaded.showTimes.Enabled());
        EXPECT_EQ(loaded.showTimes.IntervalMs(), 250);
        ui::Close(loaded);
        EXPECT_FALSE(player::LyricsWindowOpen);
        EXPECT_FALSE(loaded.Times.has_value());
    }
    ui::Show(form);
    EXPECT_EQ(form.cmdSetTimes.Caption(), "Set times");
    EXPECT_EQ(form.cmdSetTimes.ToolTip(), "To set the times of the lyrics");
    EXPECT_EQ(form.cmdSetIt.Caption(), "Set");
    EXPECT_EQ(form.cmdSetIt.ToolTip(), "The the time for the current line");
    EXPECT_EQ(form.cmdSave.Caption(), "\u00CD");
    EXPECT_EQ(form.cmdSave.ToolTip(), "Save the lyrcis to the file.");
    EXPECT_EQ(form.cmdTest.Caption(), "~");
    EXPECT_EQ(form.cmdTest.ToolTip(), "Test the times");
    EXPECT_EQ(form.cmdPause.Caption(), ";");
    EXPECT_EQ(form.cmdPause.ToolTip(), "Pause the test.");
}

TEST_F(FollowLyrics, FollowsTheSong)
{
    lyrics::FollowLyrics(form, "", kTwoLines);
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_TRUE(form.Lyrics.Enabled());
    EXPECT_TRUE(form.showTimes.Enabled());
    ASSERT_TRUE(form.Times.has_value());
    EXPECT_EQ(form.Times->size(), 2U);

    form.showTimes.Fire(); // at 0 seconds
    EXPECT_EQ(Selected(form), "");
    Play(42);
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "Two");
    Play(43); // no entry: the last line stays
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "Two");
    form.Lyrics.NoteSelection(0, 1); // the selection made by the user stays until the next line
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "O");
    Play(10);
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "One");
}

TEST_F(FollowLyrics, SecondsAreRoundedHalfToEven)
{
    lyrics::FollowLyrics(form, "", "[0:42]x\r\n");
    for (const auto &[seconds, want] :
         {std::pair(41.499, ""), {41.5, "x"}, {42.499, "x"}, {42.5, "x"}, {42.501, ""}}) {
        form.Lyrics.NoteSelection(0, 0);
        Play(seconds);
        form.showTimes.Fire();
        EXPECT_EQ(Selected(form), want) << seconds;
    }
}

TEST_F(FollowLyrics, ALastLineWithoutALineBreakSelectsNothing)
{
    lyrics::FollowLyrics(form, "", "[0:01]One\r\n[0:02]end");
    Play(1);
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "One");
    Play(2);
    form.showTimes.Fire();
    EXPECT_EQ(form.Lyrics.SelStart(), 5);
    EXPECT_EQ(form.Lyrics.SelLength(), 0);
}

// Many programs end the lines of lyrics with LF alone.
TEST_F(FollowLyrics, LinesThatEndWithOneCharacterAreFollowedToo)
{
    for (const char *text : {"[0:01]One\n[0:02]Two\n", "[0:01]One\r[0:02]Two\r"}) {
        lyrics::FollowLyrics(form, "", text);
        EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
        Play(2);
        form.showTimes.Fire();
        EXPECT_EQ(Selected(form), "Two");
    }
}

TEST_F(FollowLyrics, NoMarksNoTimer)
{
    for (const char *text : {"", "One\r\nTwo\r\n", "[Intro]\r\n[0:01]One\r\n"}) {
        lyrics::FollowLyrics(form, "", kTwoLines);
        lyrics::FollowLyrics(form, "", text);
        EXPECT_EQ(form.Lyrics.Text(), text);
        EXPECT_FALSE(form.showTimes.Enabled());
        EXPECT_EQ(form.Times->size(), 0U);
    }
}

TEST_F(FollowLyrics, TheSameLyricsAgainAreParsedAgain)
{
    for (int i = 0; i < 3; ++i) {
        lyrics::FollowLyrics(form, "", kTwoLines);
        EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
        EXPECT_EQ(form.Times->size(), 2U);
        EXPECT_TRUE(form.showTimes.Enabled());
        EXPECT_FALSE(form.tmrReport.Enabled());
    }
    // Another window has closed meanwhile, which clears the flag.
    player::LyricsWindowOpen = false;
    lyrics::FollowLyrics(form, "", kTwoLines);
    EXPECT_FALSE(form.tmrReport.Enabled());
    EXPECT_TRUE(player::LyricsWindowOpen);
}

TEST_F(FollowLyrics, WhileABoxIsUpTheLyricsStay)
{
    lyrics::FollowLyrics(form, "Song", kTwoLines);
    EXPECT_EQ(form.Title(), "Song - Lyrics");
    windows.modal = true;
    EXPECT_THROW(lyrics::FollowLyrics(form, "Next", "next"), runtime::RuntimeError);
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_EQ(form.Title(), "Song - Lyrics");
    EXPECT_TRUE(form.showTimes.Enabled());
    windows.modal = false;
    lyrics::FollowLyrics(form, "", "next");
    EXPECT_EQ(form.Title(), "Lyrics");
}

TEST_F(FollowLyrics, LeavesRoomAroundTheText)
{
    ui::Show(form);
    for (const auto &[width, height] : {std::pair(6000, 5250), {9000, 3000}}) {
        form.size = {0, 0, width, height};
        form.onResize();
        EXPECT_EQ(form.Lyrics.Width(), width - 320);
        EXPECT_EQ(form.Lyrics.Height(), height - 810);
        for (const ui::Area *button :
             {static_cast<ui::Area *>(&form.cmdSetTimes), static_cast<ui::Area *>(&form.cmdSave)}) {
            EXPECT_GE(button->Top(), form.Lyrics.Place().Bottom());
            EXPECT_LE(button->Place().Bottom(), height);
        }
    }
    const ui::Rect before = form.Lyrics.Place();
    form.minimised = true;
    form.size = {0, 0, 10, 10};
    form.onResize();
    EXPECT_EQ(form.Lyrics.Place(), before);
    form.minimised = false;
    form.onResize();
    EXPECT_EQ(form.Lyrics.Place().height, 0);
}

TEST_F(FollowLyrics, OneKeySetsAMark)
{
    EXPECT_FALSE(form.onKeyDown({lyrics::kMarkKey}));
    ui::Show(form);
    EXPECT_FALSE(form.onKeyDown({lyrics::kMarkKey})); // this window only follows the song
    LyricsForm setting;
    Setting(setting, "One\r\nTwo\r\n");
    setting.Lyrics.NoteSelection(5, 0);
    Play(7);
    EXPECT_FALSE(setting.onKeyDown({ui::kEnterKey}));
    EXPECT_FALSE(setting.onKeyDown({lyrics::kMarkKey, true}));
    EXPECT_TRUE(setting.onKeyDown({lyrics::kMarkKey}));
    EXPECT_EQ(setting.Lyrics.Text(), "One\r\n[00:07]Two\r\n");
}

TEST_F(FollowLyrics, SymbolsHavePictures)
{
    Setting(form, kTwoLines);
    EXPECT_EQ(form.cmdSave.Image(), "Save");
    EXPECT_EQ(form.cmdTest.Image(), "Test");
    EXPECT_EQ(form.cmdPause.Image(), "Pause");
    form.cmdTest.Click();
    EXPECT_EQ(form.cmdTest.Image(), "Stop");
    form.cmdPause.Click();
    EXPECT_EQ(form.cmdPause.Image(), "Play");
}

TEST_F(FollowLyrics, MarksThatCannotBeParsedAreReportedOnce)
{
    lyrics::FollowLyrics(form, "", kTwoLines);
    lyrics::FollowLyrics(form, "", "[0:01]One\r\n[0:01]Two\r\n[0:03]x\r\n");
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n[0:03]x\r\n");
    EXPECT_TRUE(form.Lyrics.Enabled());
    EXPECT_TRUE(form.cmdSetTimes.Enabled());
    EXPECT_FALSE(form.showTimes.Enabled());
    ASSERT_TRUE(form.tmrReport.Enabled());
    try {
        form.tmrReport.Fire();
        ADD_FAILURE() << "nothing was reported";
    } catch (const runtime::RuntimeError &failure) {
        EXPECT_EQ(failure.number, runtime::kDuplicateKey);
        EXPECT_EQ(failure.description, runtime::DescribeError(runtime::kDuplicateKey));
    }
    EXPECT_FALSE(form.tmrReport.Enabled());
    form.tmrReport.Fire();
    form.showTimes.Fire();
    lyrics::FollowLyrics(form, "", kTwoLines); // the next song
    EXPECT_EQ(form.Times->size(), 2U);
    EXPECT_TRUE(form.showTimes.Enabled());
}

TEST_F(FollowLyrics, MarksThatAreTypedAreTakenOut)
{
    lyrics::FollowLyrics(form, "", kTwoLines);
    form.Lyrics.Replace(5, 0, "[1:00"); // not yet
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n[1:00Two\r\n");
    form.Lyrics.Replace(10, 0, "]");
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_EQ(form.Times->at("60l"), (LyricsData{60, 5, 3}));
    EXPECT_FALSE(form.tmrDraft.Enabled()); // this window has no draft
}

TEST_F(FollowLyrics, SetTimesOpensASecondWindowForTheSong)
{
    player.SetPlaylist("#EXTM3U\r\n/music/first.mp3\r\n/music/song.mp3\r\n");
    player.Answer(125, 1);
    std::vector<std::string> opened;
    form.newSettingWindow = [&opened](const std::string &file) { opened.push_back(file); };
    lyrics::FollowLyrics(form, "", kTwoLines);
    form.cmdSetTimes.Click();
    EXPECT_EQ(opened, Lines{"/music/song.mp3"});
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n");
    EXPECT_TRUE(form.showTimes.Enabled());
}

} // namespace
