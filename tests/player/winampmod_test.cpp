#include "player/winampmod.h"
#include "tests/support/recordingplayer.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

using Lines = std::vector<std::string>;
using namespace player;

class WinAmpMod : public testing::Test
{
protected:
    tests::ScriptedDesktop desktop;
    tests::RecordingPlayer port;
};

TEST_F(WinAmpMod, MessageTable)
{
    struct Row {
        const char *name;
        std::function<double()> call;
        const char *message;
    };
    const Row rows[] = {
        {"GetPlayingState", [] { return GetPlayingState(); }, "1024 0 104"},
        {"GetPlayingPosition", [] { return GetPlayingPosition(); }, "1024 0 105"},
        {"GetPlayingLength", [] { return GetPlayingLength(); }, "1024 1 105"},
        {"JumpToTime", [] { return JumpToTime(61, 500); }, "1024 61500 106"},
        {"JumpToTime with more than a second of ms", [] { return JumpToTime(1, 2001); },
         "1024 3001 106"},
        {"WritePlaylistFile", [] { return WritePlaylistFile(); }, "1024 0 120"},
        {"SetPlaylistPosition", [] { return SetPlaylistPosition(32767); }, "1024 32767 121"},
        {"SetPlaylistPosition, widened with its sign", [] { return SetPlaylistPosition(-1); },
         "1024 -1 121"},
        {"GetPlaylistLength", [] { return GetPlaylistLength(); }, "1024 0 124"},
        {"GetPlaylistPosition", [] { return GetPlaylistPosition(); }, "1024 0 125"},
        {"PreviousTrack", [] { return PreviousTrack(); }, "273 40044 0"},
        {"PlayTrack", [] { return PlayTrack(); }, "273 40045 0"},
        {"PauseTrack", [] { return PauseTrack(); }, "273 40046 0"},
        {"StopTrack", [] { return StopTrack(); }, "273 40047 0"},
        {"NextTrack", [] { return NextTrack(); }, "273 40048 0"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        WinampWindow = 0;
        EXPECT_EQ(row.call(), 0); // no window was searched for yet
        EXPECT_EQ(port.Received(), Lines{std::string(row.message) + " to 0"});
        ASSERT_TRUE(IsWinampRunning());
        port.Received();
        for (const std::int32_t answer : {2147483647, -1, 3}) {
            port.answers[row.message] = answer;
            EXPECT_EQ(row.call(), answer);
            EXPECT_EQ(port.Received(), Lines{row.message});
        }
        port.window = 10; // the old handle is invalid
        EXPECT_EQ(row.call(), 0);
        port.window = 9;
        port.Received();
    }
}

TEST_F(WinAmpMod, JumpBeyond32BitsIsAnOverflow)
{
    EXPECT_THROW(JumpToTime(2147484, 0), runtime::RuntimeError);
    EXPECT_EQ(port.Received(), Lines());
}

TEST_F(WinAmpMod, EnqueueSendsTheBytesWithTheirZero)
{
    IsWinampRunning();
    port.Received();
    EXPECT_EQ(EnqueueFile("/m/\xE9 1.mp3"), 0);
    EXPECT_EQ(port.Received(), Lines{"copy 100 11 /m/\xE9 1.mp3"});
    EXPECT_EQ(EnqueueFile(""), 0);
    EXPECT_EQ(port.Received(), Lines{"copy 100 1 "});
}

TEST_F(WinAmpMod, RunningIsAWindowOfTheClass)
{
    EXPECT_EQ(WinampWindow, 0U);
    EXPECT_TRUE(IsWinampRunning());
    EXPECT_EQ(WinampWindow, 9U);
    port.window = 0;
    EXPECT_FALSE(IsWinampRunning());
    EXPECT_EQ(WinampWindow, 0U);
    EXPECT_EQ(port.Received(), (Lines{"find Winamp v1.x", "find Winamp v1.x"}));
}

TEST(WinAmpModAlone, WithoutAPortEachAnswerIsEmpty)
{
    ASSERT_EQ(platform::TheMachine().player, nullptr);
    EXPECT_FALSE(IsWinampRunning());
    EXPECT_EQ(GetPlayingState(), 0);
    EXPECT_EQ(GetPlaylistPosition(), 0);
    EXPECT_EQ(EnqueueFile("/a.mp3"), 0);
    EXPECT_EQ(ToggleShuffle(), 0);
    EXPECT_EQ(GetWinampFolder(), "");
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(GetPlaylistIndexOf("/a.mp3"), -1);
    EXPECT_FALSE(IsInPlaylist("/a.mp3"));
}

// --- Typing keys.

TEST_F(WinAmpMod, ShuffleTypesOneLetter)
{
    IsWinampRunning();
    port.Received();
    EXPECT_EQ(ToggleShuffle(), 1);
    EXPECT_EQ(port.Received(), (Lines{"front 9", "key 115 116 0", "front 3"}));
    EXPECT_EQ(desktop.yields, 1);
}

TEST_F(WinAmpMod, ModifiersAreHeldAroundTheKeyThatIsNeverReleased)
{
    port.keys['A'] = 0x141; // Shift
    port.keys['@'] = 0x740; // Shift, Control and Alt
    port.foreground = 9;
    EXPECT_EQ(TypeKeysToWindow("A@", 9), 1);
    EXPECT_EQ(port.Received(), (Lines{"key 16 0 0", "key 65 66 0", "key 16 0 2", "key 16 0 0",
                                      "key 17 0 0", "key 18 0 0", "key 64 65 0", "key 16 0 2",
                                      "key 17 0 2", "key 18 0 2", "front 9"}));
    EXPECT_EQ(desktop.yields, 0);
}

TEST_F(WinAmpMod, AWindowThatNeverComesForwardGetsNoKey)
{
    port.frontAfter = 1000;
    EXPECT_EQ(TypeKeysToWindow("ss", 9), 0);
    EXPECT_EQ(port.Received(), Lines(20, "front 9")); // and the old window is not restored
    EXPECT_EQ(desktop.yields, 20);
}

TEST_F(WinAmpMod, TheTwentiethAttemptCounts)
{
    port.frontAfter = 19;
    EXPECT_EQ(TypeKeysToWindow("s", 9), 1);
    EXPECT_EQ(port.Received().size(), 22U);
}

TEST_F(WinAmpMod, AWindowThatLeavesBetweenTwoLetters)
{
    port.onCall = [this](const std::string &line) {
        if (line == "key 115 116 0") {
            port.foreground = 3;
            port.frontAfter = 1000;
        }
    };
    EXPECT_EQ(TypeKeysToWindow("ss", 9), 0);
    const Lines received = port.Received();
    EXPECT_EQ(std::count(received.begin(), received.end(), "key 115 116 0"),
              1); // it is not typed again
    EXPECT_EQ(received.back(), "front 9");
}

TEST_F(WinAmpMod, NoTextNoKey)
{
    EXPECT_EQ(TypeKeysToWindow("", 9), 0);
    EXPECT_EQ(port.Received(), Lines());
}

// --- The player on disk.

TEST_F(WinAmpMod, RegistryQuestion)
{
    port.noteRegistry = true;
    port.command = "\"/p/player\" \"%1\"";
    EXPECT_EQ(GetWinampExePath(), "/p/player");
    // A root's key stays open.
    EXPECT_EQ(port.Received(),
              (Lines{"open 2147483648 WinAmp.File\\shell\\play\\command 1", "query 77  256"}));
    EXPECT_EQ(ReadRegistryString(0, "Sub", "Name"), port.command);
    EXPECT_EQ(port.Received(), (Lines{"open 0 Sub 1", "query 77 Name 256", "close 77"}));
}

TEST_F(WinAmpMod, RegistryAnswers)
{
    port.command = std::string(255, 'x');
    EXPECT_EQ(ReadRegistryString(1, "s", ""), port.command);
    port.command += 'x'; // no room for its zero
    EXPECT_EQ(ReadRegistryString(1, "s", ""), "");
    port.command = "text";
    port.valueType = 2; // a text with variables in it
    EXPECT_EQ(ReadRegistryString(1, "s", ""), "");
    port.valueType = 1;
    port.command = "";
    EXPECT_EQ(ReadRegistryString(1, "s", ""), "");
}

TEST_F(WinAmpMod, ProgramAndFolder)
{
    constexpr struct {
        const char *name, *command, *program, *folder;
    } rows[] = {
        {"as registered", "\"/opt/w a/player\" \"%1\"", "/opt/w a/player", "/opt/w a/"},
        {"in the root", "\"/player\" \"%1\"", "/player", "/"},
        {"no separator", "\"player\" \"%1\"", "player", "p"},
        {"seven characters", "1234567", "", ""},
        {"eight characters", "12345678", "2", "2"},
        {"no quotation marks: a wrong path", "/opt/player %1", "opt/pla", "opt/"},
        {"not registered", "", "", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        port.command = row.command;
        EXPECT_EQ(GetWinampExePath(), row.program);
        EXPECT_EQ(GetWinampFolder(), row.folder);
    }
}

// --- The playlist's text.

TEST_F(WinAmpMod, StripExtInfLines)
{
    constexpr struct {
        const char *name, *text, *want;
    } rows[] = {
        {"two songs", "#EXTM3U\r\n#EXTINF:1,A\r\n/a\r\n#EXTINF:2,B\r\n/b\r\n", "/a\r\n/b\r\n"},
        {"a line of information is missing", "#EXTM3U\r\n/a\r\n#EXTINF:2,B\r\n/b\r\n",
         "/a\r\n/b\r\n"},
        {"the head alone", "#EXTM3U\r\n", ""},
        {"shorter than the head", "#EXT", ""},
        {"empty", "", ""},
        {"nine characters go, whatever they are", "123456789/a\r\n", "/a\r\n"},
        {"the last line is not closed", "#EXTM3U\r\n#EXTINF:1,A\r\n/a", "/a"},
        {"information without an end", "#EXTM3U\r\n/a\r\n#EXTINF:1,A", "/a\r\n"},
        {"a closing CR alone", "#EXTM3U\r\n/a\r\n#EXTINF:1,A\r", "/a\r\n"},
        {"inside a path", "#EXTM3U\r\n/a#EXTINF/b\r\n/c\r\n", "/a/c\r\n"},
        {"joined by a cut", "#EXTM3U\r\n#EXT#EXTINF:1\r\nINF:2\r\n/a\r\n", "/a\r\n"},
        {"small letters stay", "#EXTM3U\r\n#extinf:1\r\n", "#extinf:1\r\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(StripExtInfLines(row.text), row.want);
    }
}

constexpr std::string_view kTwoTitledSongs = "#EXTM3U\r\n#EXTINF:1,A\r\n/m/a.mp3\r\n/m/b.mp3\r\n";

TEST_F(WinAmpMod, CurrentSongAsksInOrder)
{
    IsWinampRunning();
    port.Received();
    port.noteReads = true;
    port.noteRegistry = true;
    port.SetPlaylist(kTwoTitledSongs);
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    EXPECT_EQ(
        port.Received(),
        (Lines{"1024 0 125", "open 2147483648 WinAmp.File\\shell\\play\\command 1", "query 77  256",
               "find Winamp v1.x", "1024 0 120", "read " + port.Playlist()}));
}

TEST_F(WinAmpMod, CurrentSongByIndex)
{
    IsWinampRunning();
    port.SetPlaylist(kTwoTitledSongs);
    port.Answer(125, 1);
    EXPECT_EQ(GetCurrentSongPath(), "/m/b.mp3");
    port.Answer(125, 2); // after the last line
    EXPECT_EQ(GetCurrentSongPath(), "");
    port.Answer(125, 2147483647);
    EXPECT_EQ(GetCurrentSongPath(), "");
    port.Answer(125, -1);
    port.Received();
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(port.Received(), Lines{"1024 0 125"});
    port.Answer(125, 0);
    port.SetPlaylist("#EXTM3U\r\n/m/a.mp3"); // a last line without an end
    EXPECT_EQ(GetCurrentSongPath(), "");
}

// The first question is sent to the window that was last found; a player that was started later
// answers 0 to it.
TEST_F(WinAmpMod, CurrentSongAsksTheOldHandleFirst)
{
    IsWinampRunning();
    port.SetPlaylist(kTwoTitledSongs);
    port.Answer(125, 1);
    port.window = 12;
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    EXPECT_EQ(GetCurrentSongPath(), "/m/b.mp3");
}

TEST_F(WinAmpMod, CurrentSongEndsAtTheFirstFailedCheck)
{
    IsWinampRunning();
    port.SetPlaylist(kTwoTitledSongs);
    port.noteReads = true;
    port.Answer(120, -1);
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(port.received.back(), "1024 0 120");
    port.Answer(120, 7); // anything but -1
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    port.window = 0;
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(port.received.back(), "find Winamp v1.x");
    port.window = 9;
    port.command.clear();
    port.Received();
    EXPECT_EQ(GetCurrentSongPath(), "");
    EXPECT_EQ(port.Received().size(), 1U); // the window is not even searched for
}

TEST_F(WinAmpMod, CurrentSongKeepsTheTextOfAFileThatIsGone)
{
    IsWinampRunning();
    EXPECT_EQ(GetCurrentSongPath(), ""); // nothing was read yet
    port.SetPlaylist(kTwoTitledSongs);
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    std::filesystem::remove(port.Playlist());
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    port.SetPlaylist("");
    EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
    port.SetPlaylist("#EXTM3U\r\n");
    EXPECT_EQ(GetCurrentSongPath(), ""); // another text, without a song
    port.SetPlaylist(kTwoTitledSongs);
    for (const int number : {75, 53, 52}) {
        port.readError = 0;
        EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3");
        port.readError = number;
        EXPECT_EQ(GetCurrentSongPath(), "/m/a.mp3") << number;
    }
    port.readError = 57;
    EXPECT_EQ(GetCurrentSongPath(), "");
}

TEST_F(WinAmpMod, IndexAsksTheLengthFirst)
{
    IsWinampRunning();
    port.SetPlaylist(kTwoTitledSongs);
    port.Answer(124, 2);
    port.Received();
    EXPECT_EQ(GetPlaylistIndexOf("/m/b.mp3"), 1);
    EXPECT_EQ(port.Received(), (Lines{"1024 0 124", "find Winamp v1.x", "1024 0 120"}));
}

TEST_F(WinAmpMod, IndexOfAPath)
{
    IsWinampRunning();
    port.SetPlaylist(
        "#EXTM3U\r\n#EXTINF:1,A\r\n/m/a.mp3\r\n/m/b.mp3\r\n/m/\xC3\xA9.mp3\r\n/m/b.mp3\r\n/m/e");
    port.Answer(124, 5);
    EXPECT_EQ(GetPlaylistIndexOf("/m/a.mp3"), 0);
    EXPECT_EQ(GetPlaylistIndexOf("/M/B.MP3"), 1);        // without regard to case
    EXPECT_EQ(GetPlaylistIndexOf("/m/\xC3\x89.mp3"), 2); // nor of letters beyond ASCII
    EXPECT_EQ(GetPlaylistIndexOf("/m/b"), -1);           // only complete lines count
    EXPECT_EQ(GetPlaylistIndexOf("/m/e"), -1);           // a line without an end
    port.Answer(124, 2);
    EXPECT_EQ(GetPlaylistIndexOf("/m/\xC3\x89.mp3"), -1); // beyond the length
    port.Answer(124, 0);
    EXPECT_EQ(GetPlaylistIndexOf("/m/a.mp3"), -1);
}

TEST_F(WinAmpMod, IndexBeyond16BitsIsNone)
{
    IsWinampRunning();
    std::string text = "#EXTM3U\r\n";
    for (int i = 0; i <= 32768; ++i)
        text += "/" + std::to_string(i) + "\r\n";
    port.SetPlaylist(text);
    port.Answer(124, 32769);
    EXPECT_EQ(GetPlaylistIndexOf("/32767"), 32767);
    EXPECT_EQ(GetPlaylistIndexOf("/32768"), -1);
}

TEST_F(WinAmpMod, PlaylistHoldsAPartOfAPath)
{
    IsWinampRunning();
    port.SetPlaylist(kTwoTitledSongs);
    EXPECT_TRUE(IsInPlaylist("/M/a.MP3"));
    EXPECT_TRUE(IsInPlaylist("/m/a"));
    EXPECT_TRUE(IsInPlaylist("#extinf:1")); // the text as it is read, nothing cut
    EXPECT_FALSE(IsInPlaylist("/m/c.mp3"));
}

TEST_F(WinAmpMod, ListQuestionsEndAtTheFirstFailedCheck)
{
    port.SetPlaylist(kTwoTitledSongs);
    port.noteReads = true;
    const auto both = [this] {
        port.Received();
        EXPECT_FALSE(IsInPlaylist("/m/a.mp3"));
        EXPECT_EQ(GetPlaylistIndexOf("/m/a.mp3"), -1);
        const Lines received = port.Received();
        return std::count(received.begin(), received.end(), "read " + port.Playlist());
    };
    port.Answer(124, 2);
    port.Answer(120, -1);
    EXPECT_EQ(both(), 0);
    port.Answer(120, 0);
    port.window = 0;
    EXPECT_EQ(both(), 0);
    port.window = 9;
    port.command.clear();
    EXPECT_EQ(both(), 0);
}

TEST_F(WinAmpMod, FileCanBeOpened)
{
    port.SetPlaylist("");
    EXPECT_TRUE(FileCanBeOpened(port.Playlist()));
    EXPECT_FALSE(FileCanBeOpened(port.folder / "none"));
    EXPECT_FALSE(FileCanBeOpened(port.folder.Path()));
    EXPECT_FALSE(FileCanBeOpened(""));
}

} // namespace
