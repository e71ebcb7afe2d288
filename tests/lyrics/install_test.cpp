#include "browser/commands.h"
#include "lyrics/drafts.h"
#include "lyrics/install.h"
#include "lyrics/lyricsform.h"
#include "player/nowplaying.h"
#include "tests/lyrics/lyricsfixture.h"

namespace
{

using lyrics::LyricsForm;
using tests::kTwoLines;

// The forms that are loaded, the oldest first.
std::vector<LyricsForm *> Forms()
{
    std::vector<LyricsForm *> forms;
    for (ui::Form *form : ui::TheFormHost()->Forms())
        if (auto *found = dynamic_cast<LyricsForm *>(form))
            forms.push_back(found);
    return forms;
}

class LyricsWindows : public tests::LyricsFixture
{
protected:
    LyricsWindows() { lyrics::Install(); }
    ~LyricsWindows() override
    {
        lyrics::ForgetForms();
        player::TheLyricsWindowCalls() = {};
        browser::ForgetRegistrations();
    }

    static void Show(const std::string &text)
    {
        player::TheLyricsWindowCalls().show("/music/song.mp3", "Artist - Title", text);
    }
};

TEST_F(LyricsWindows, TheNextSongReplacesTheText)
{
    Show("[0:01]One\r\n");
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_EQ(Forms()[0]->Lyrics.Text(), "One\r\n");
    EXPECT_EQ(Forms()[0]->Title(), "Artist - Title - Lyrics");
    Show("[0:01]Two\r\n");
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_EQ(Forms()[0]->Lyrics.Text(), "Two\r\n");
    EXPECT_TRUE(player::LyricsWindowOpen);
    player::TheLyricsWindowCalls().unload(); // a song without lyrics
    EXPECT_EQ(Forms().size(), 0U);
    EXPECT_FALSE(player::LyricsWindowOpen);
    player::TheLyricsWindowCalls().unload(); // whether open or not
    Show("Three");
    EXPECT_EQ(Forms().at(0)->Lyrics.Text(), "Three");
}

TEST_F(LyricsWindows, OverAModalWindowNoLyricsStay)
{
    Show("[0:01]One\r\n");
    windows.modal = true;
    EXPECT_THROW(Show("[0:01]Two\r\n"), runtime::RuntimeError);
    EXPECT_EQ(Forms().size(), 0U) << "those of the song before have left";
    windows.modal = false;
    Show("[0:01]Two\r\n");
    EXPECT_EQ(Forms().at(0)->Lyrics.Text(), "Two\r\n");
}

TEST_F(LyricsWindows, OnlyTheCommandGivesTheWindowTheKeyboard)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    player.SetPlaylist("#EXTM3U\r\n" + song + "\r\n");
    player.Answer(104, 1); // a song plays
    Show(kTwoLines);
    EXPECT_FALSE(Forms()[0]->takesKeyboard);
    player::TheLyricsWindowCalls().unload();
    browser::RunHandler("submnuShowLyricsCurrentSong");
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_TRUE(Forms()[0]->takesKeyboard);
    Show(kTwoLines);
    EXPECT_FALSE(Forms()[0]->takesKeyboard);
    lyrics::OpenTimeSetting(song);
    EXPECT_TRUE(Forms()[1]->takesKeyboard);
}

TEST_F(LyricsWindows, TwoSideBySide)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    Show(kTwoLines);
    player.SetPlaylist("#EXTM3U\r\n" + song + "\r\n");
    Forms()[0]->cmdSetTimes.Click();
    ASSERT_EQ(Forms().size(), 2U);
    LyricsForm &setting = *Forms()[1];
    EXPECT_EQ(setting.Lyrics.Text(), kTwoLines);
    EXPECT_EQ(setting.FileName, song);
    EXPECT_EQ(Forms()[0]->Lyrics.Text(), "One\r\nTwo\r\n");
    Play(42);
    Forms()[0]->showTimes.Fire();
    setting.showTimes.Fire();
    EXPECT_EQ(Forms()[0]->Lyrics.SelLength(), 3);
    EXPECT_EQ(setting.Lyrics.SelLength(), 0);

    EXPECT_TRUE(ui::AskToClose(setting)); // either window's end clears the flag
    EXPECT_FALSE(player::LyricsWindowOpen);
    Show("[0:42]Again\r\n"); // and yet the one that is there starts with empty entries
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_EQ(Forms()[0]->Times->size(), 1U);
    EXPECT_FALSE(Forms()[0]->tmrReport.Enabled());
    EXPECT_TRUE(player::LyricsWindowOpen);
}

TEST_F(LyricsWindows, TheSongWithoutLyricsLeavesTheSettingWindow)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    Show(kTwoLines);
    lyrics::OpenTimeSetting(song);
    player::TheLyricsWindowCalls().unload();
    ASSERT_EQ(Forms().size(), 1U);
    EXPECT_TRUE(Forms()[0]->SettingTimes);
}

TEST_F(LyricsWindows, WithoutASongNothingOpens)
{
    Show(kTwoLines);
    desktop.ExpectBox("No song is playing");
    player.Answer(125, -1);
    Forms()[0]->cmdSetTimes.Click();
    EXPECT_EQ(Forms().size(), 1U);
}

TEST_F(LyricsWindows, AllDraftsAreFlushed)
{
    std::vector<std::string> songs;
    for (const char *name : {"a.mp3", "b.mp3"}) {
        songs.push_back(WriteSong(name, "One\r\n"));
        lyrics::OpenTimeSetting(songs.back());
        Forms().back()->Lyrics.SetText(name);
    }
    lyrics::FlushDrafts();
    EXPECT_EQ(lyrics::ReadDraft(songs[0]), "a.mp3");
    EXPECT_EQ(lyrics::ReadDraft(songs[1]), "b.mp3");
}

// At the end of the program, all windows are asked whether they may close before any of them
// closes.
TEST_F(LyricsWindows, TheEndAsksForEach)
{
    for (const char *name : {"a.mp3", "b.mp3"}) {
        lyrics::OpenTimeSetting(WriteSong(name, "One\r\n"));
        Forms().back()->Lyrics.SetText(name);
    }
    desktop.ExpectBox("not saved", platform::Answer::Discard);
    desktop.ExpectBox("not saved", platform::Answer::Cancel);
    EXPECT_FALSE(ui::AskToCloseAll());
    EXPECT_EQ(Forms().size(), 2U);
}

} // namespace
