// tests/windows/playedlyrics.h - the main window, the windows of lyrics and the real player.
#pragma once

#include "lyrics/frmLyricsView.h"
#include "lyrics/install.h"
#include "lyrics/lyricsform.h"
#include "metadata/tagwriter.h"
#include "platform/player/audacious.h"
#include "platform/posix/systemclock.h"
#include "player/install.h"
#include "player/nowplaying.h"
#include "player/playing.h"
#include "player/winampmod.h"
#include "tests/support/configfolder.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/realplayer.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tests
{

class PlayedLyrics : public MainWindowTest
{
protected:
    PlayedLyrics()
    {
        platform::TheMachine().clock = &m_clock;
        platform::TheMachine().player = &m_port;
        lyrics::RegisterLyricsView();
        metadata::TheTagWriterHooks().releasePlayingFile = player::ReleasePlayingFile;
        metadata::TheTagWriterHooks().restorePlayingFile = player::RestorePlayingFile;
    }
    ~PlayedLyrics() override
    {
        lyrics::ForgetForms();
        Settle(); // closed windows are deleted by the next event
        Leave();
        metadata::TheTagWriterHooks() = {};
        player::TheLyricsWindowCalls() = {};
        player::ResetNowPlaying();
        player::ResetWinAmpMod();
        platform::TheMachine().player = nullptr;
        platform::TheMachine().clock = &clock;
    }

    // A song of so many seconds, with these lyrics.
    std::string WriteSong(int seconds, const std::string &lyrics)
    {
        const std::string audio = ReadFile(real.Song("silence.mp3", seconds));
        WriteFile(Song("song.mp3"), Id3v2(TextFrame("TIT2", "Title") + TextFrame("TPE1", "Artist") +
                                          Frame("USLT", std::string("\0eng\0", 5) + lyrics)) +
                                        audio + Id3v1({"Title", "Artist", "", "", "", 0, 17}));
        return Song("song.mp3");
    }

    // The program over that song, and the player.
    void StartAll()
    {
        real.Start();
        Start();
        player::Install();
        lyrics::Install();
        Regenerate();
        ASSERT_TRUE(WaitUntil([this] { return Rows().size() == 1; }, 20'000));
        ClickExpander("ByArtist");
        EndDoubleClick();
        ClickNode("#ARTIST");
        ASSERT_EQ(Form().LV.Count(), 1);
    }

    lyrics::LyricsForm *Lyrics() const
    {
        const std::vector<ui::Form *> forms = host.Forms();
        return forms.empty() ? nullptr : dynamic_cast<lyrics::LyricsForm *>(forms.back());
    }

    mutable ui::qt::FormWindows host;
    ConfigFolder config;
    RealPlayer real;

private:
    platform::posix::SystemClock m_clock;
    platform::player::AudaciousPlayer m_port{5000}; // the machine of a test may be busy
};

} // namespace tests
