// The monitor of what is played: its panels and the lyrics window.
#include "metadata/mp3info.h"
#include "metadata/tagframes.h"
#include "player/install.h"
#include "player/nowplaying.h"
#include "tests/browser/formfixture.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/recordingplayer.h"

namespace
{

using Lines = std::vector<std::string>;

class Monitor : public tests::FormTest
{
protected:
    Monitor()
    {
        player::ResetNowPlaying();
        player::Install();
        Loaded();
        Form().tmr_Playing.SetEnabled(true);
        player::TheLyricsWindowCalls() = {
            [this](const std::string &path, const std::string &titleLine,
                   const std::string &lyrics) {
                asked.push_back("show " + path.substr(path.rfind('/') + 1) + " " + titleLine + " " +
                                lyrics);
                if (showError != 0)
                    throw runtime::RuntimeError(showError);
                player::LyricsWindowOpen = true;
            },
            [this] {
                asked.emplace_back("unload");
                player::LyricsWindowOpen = false;
            }};
        words = Song("words.mp3", "One", "U2", "[0:01]Is it");
        plain = Song("plain.mp3", "Two & <b>", "Us", "");
        Select(words);
        port.Answer(104, 1);
        port.Answer(105, 61'500);
        port.Answer(105, 205, 1);
        port.Answer(124, 1);
        player::IsWinampRunning();
    }
    ~Monitor() override
    {
        player::ResetNowPlaying();
        metadata::ResetMP3Info();
    }

    std::string Song(const std::string &name, const std::string &title, const std::string &artist,
                     const std::string &lyrics)
    {
        metadata::ID3v2Tag tag;
        tag.Title = title;
        tag.Artist = artist;
        tag.Lyrics = lyrics;
        tag.Genre = "-1";
        tests::WriteFile(folder / name, metadata::BuildID3v2Tag("", tag, 3));
        return folder / name;
    }

    void Select(const std::string &path) { port.SetPlaylist("#EXTM3U\r\n" + path + "\r\n"); }
    void Tick() { Form().tmr_Playing.Fire(); }
    std::string Panel(std::string_view key) { return Form().SB.Panel(key).text; }
    Lines Asked() { return std::exchange(asked, {}); }

    tests::RecordingPlayer port;
    std::string words, plain;
    Lines asked;
    int showError = 0;
};

TEST_F(Monitor, ANewSong)
{
    Form().SB.SetText("PlayingStatus", "untouched");
    port.Received();
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    EXPECT_EQ(Panel("PlayingStatus"), "untouched"); // on the tick of the change
    EXPECT_EQ(Asked(), Lines{"show words.mp3 U2 - One [0:01]Is it"});
    EXPECT_EQ(port.Received(), (Lines{"find Winamp v1.x", "1024 0 104", "1024 0 125",
                                      "find Winamp v1.x", "1024 0 120"}));
    Tick();
    EXPECT_EQ(Panel("PlayingStatus"), "01:02 / 03:25");
    EXPECT_EQ(Asked(), Lines());
}

TEST_F(Monitor, TheNextSongHasNoLyrics)
{
    Tick();
    Asked();
    Select(plain);
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  Us - Two && <b>"); // a caption: "&" is doubled
    EXPECT_EQ(Asked(), Lines{"unload"});
    EXPECT_FALSE(player::LyricsWindowOpen);
}

TEST_F(Monitor, TheNextSongHasLyricsAndTheWindowIsOpen)
{
    Select(plain);
    Tick();
    Asked();
    player::LyricsWindowOpen = true;
    Select(words);
    Tick();
    EXPECT_EQ(Asked(), Lines{"show words.mp3 U2 - One [0:01]Is it"}) << "which replaces them";
}

TEST_F(Monitor, PathsAreComparedExactly)
{
    Tick();
    Asked();
    std::string other = words;
    other[other.rfind('w')] = 'W';
    std::filesystem::copy_file(words, other);
    Select(other);
    Tick();
    EXPECT_EQ(Asked().size(), 1U);
}

TEST_F(Monitor, PausedIsMarkedOnce)
{
    Tick();
    Tick();
    port.Answer(104, 3);
    port.Received();
    port.Answer(105, 99'000);
    for (int i = 0; i < 3; ++i)
        Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One (paused)");
    EXPECT_EQ(Panel("PlayingStatus"), "01:02 / 03:25"); // it stays
    const Lines received = port.Received();
    EXPECT_EQ(std::count(received.begin(), received.end(), "1024 0 104"), 6); // asked twice a tick
    port.Answer(104, 1);
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
}

TEST_F(Monitor, StoppingAndStartingTheSameSong)
{
    Tick();
    Asked();
    for (const int state : {0, 2, 7, -1}) {
        port.Answer(104, 1);
        Tick();
        EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
        port.Answer(104, state);
        Tick();
        EXPECT_EQ(Panel("Playing"), "Not Playing...") << state;
        EXPECT_EQ(Panel("PlayingStatus"), "00:00 / 00:00");
    }
    port.Answer(104, 1);
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    EXPECT_EQ(Panel("PlayingStatus"), "01:02 / 03:25");
    EXPECT_EQ(Asked(), Lines()); // no new lyrics window
}

TEST_F(Monitor, TheSettingAndAClosedPlayerFreezeThePanels)
{
    Tick();
    Tick();
    shell::TheGlobals().ShowLyricsAutomatically = false;
    port.Answer(104, 0);
    port.Received();
    Tick();
    EXPECT_EQ(port.Received(), Lines());
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    EXPECT_EQ(player::GetPlayingTimeStatus(), "01:02 / 03:25"); // for the other windows
    shell::TheGlobals().ShowLyricsAutomatically = true;
    port.window = 0;
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    EXPECT_EQ(Panel("PlayingStatus"), "01:02 / 03:25");
}

// A player that stops answering at any question of a tick: the panels do not change.
TEST_F(Monitor, APlayerThatFallsSilentWithinATickFreezesThePanels)
{
    for (const int state : {1, 3, 0}) {
        for (int silentAt = 0; silentAt < 12; ++silentAt) {
            SCOPED_TRACE(std::to_string(state) + " at call " + std::to_string(silentAt));
            port.window = 9;
            port.Answer(104, 1);
            Tick();
            Tick();
            Asked();
            ASSERT_EQ(Panel("Playing"), "Playing:  U2 - One");
            port.Answer(104, state);
            int calls = 0;
            port.onCall = [&](const std::string &) {
                if (calls++ == silentAt)
                    port.window = 0;
            };
            Tick();
            port.onCall = nullptr;
            EXPECT_EQ(Asked(), Lines());
            const bool isNews = calls <= silentAt; // it answered all
            if (!isNews) {
                EXPECT_EQ(Panel("PlayingStatus"), "01:02 / 03:25");
                EXPECT_TRUE(Panel("Playing").starts_with("Playing:  U2 - One"));
            }
            EXPECT_EQ(Panel("Playing") == "Not Playing...", isNews && state == 0);
        }
    }
}

TEST_F(Monitor, OverAModalWindowTheLyricsAreLeftOut)
{
    showError = runtime::kNonModalOverModal;
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    Asked();
    showError = 0;
    Tick();
    EXPECT_EQ(Asked(), Lines());
}

TEST_F(Monitor, AnyOtherErrorTriesTheSongAgain)
{
    const std::string before = Panel("Playing");
    showError = runtime::kOutOfMemory;
    Tick();
    Tick();
    EXPECT_EQ(Panel("Playing"), before);
    EXPECT_EQ(Asked().size(), 2U);
    showError = 0;
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:  U2 - One");
    EXPECT_EQ(Asked().size(), 1U);
}

TEST_F(Monitor, AnEmptyPathIsASongLikeAnyOther)
{
    Tick();
    Asked();
    port.Answer(125, -1);
    Tick();
    EXPECT_EQ(Panel("Playing"), "Playing:   - ");
    EXPECT_EQ(Asked(), Lines{"unload"});
}

TEST_F(Monitor, AnotherWritersTextStaysUntilTheNextChange)
{
    Tick();
    Form().SB.SetText("Playing", "Adding: x");
    Tick();
    EXPECT_EQ(Panel("Playing"), "Adding: x");
    port.Answer(104, 3);
    Tick();
    EXPECT_EQ(Panel("Playing"), "Adding: x (paused)");
}

TEST_F(Monitor, LyricsOnDemand)
{
    const auto choose = [this] {
        player::submnuShowLyricsCurrentSong_Click();
        return std::exchange(desktop.boxes, {});
    };
    EXPECT_EQ(choose(), Lines());
    EXPECT_EQ(Asked(), Lines{"show words.mp3 U2 - One [0:01]Is it"});
    EXPECT_EQ(choose(), Lines()); // open already: its text is not replaced
    EXPECT_EQ(Asked(), Lines());
    Select(plain);
    EXPECT_EQ(choose(), Lines{"The lyrics for that song weren't found"});
    EXPECT_EQ(Asked(), Lines{"unload"});
    port.Answer(104, 3); // a paused song counts
    EXPECT_EQ(choose(), Lines{"The lyrics for that song weren't found"});
    port.Answer(104, 2);
    EXPECT_EQ(choose(), Lines{"No song is playing"});
    port.Answer(104, 0);
    EXPECT_EQ(choose(), Lines{"No song is playing"});
    port.window = 0;
    EXPECT_EQ(choose(), Lines{"Winamp is not running"});
}

} // namespace
