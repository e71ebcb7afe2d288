// tests/lyrics/lyricsfixture.h - what the tests of the lyrics windows need: songs, a player that
// records its calls, a host of forms, a user who follows a script.
#pragma once

#include "lyrics/lyricsform.h"
#include "metadata/mp3info.h"
#include "platform/windows.h"
#include "player/nowplaying.h"
#include "tests/support/configfolder.h"
#include "tests/support/fakeforms.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/recordingplayer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tests
{

inline constexpr char kTwoLines[] = "[00:10]One\r\n[00:42]Two\r\n";

inline std::string Enqueued(const std::string &path)
{
    return "copy 100 " + std::to_string(path.size() + 1) + " " + path;
}

// The messages that change something, without those that only ask.
inline std::vector<std::string> Commands(RecordingPlayer &player)
{
    std::vector<std::string> commands;
    for (const std::string &line : player.Received())
        if (line.starts_with("273 ") || line.starts_with("copy "))
            commands.push_back(line);
    return commands;
}

// The lyrics in a file.
inline std::string LyricsIn(const std::string &file)
{
    return metadata::ReadSongInfo(file).id3v2.Lyrics;
}

// The highlighted text.
inline std::string SelectedIn(const lyrics::LyricsForm &form)
{
    const lyrics::LyricsBox &box = form.Lyrics;
    const std::size_t start = box.OffsetOf(box.SelStart());
    return box.Text().substr(start, box.OffsetOf(box.SelStart() + box.SelLength()) - start);
}

// A window system with, or without, a modal window.
struct ModalOrNot : platform::Windows {
    std::vector<platform::Placement> Screens() override { return {}; }
    bool KnowsPlaces() override { return true; }
    void CheckNonModal() override
    {
        if (modal)
            throw runtime::RuntimeError(runtime::kNonModalOverModal);
    }
    bool IsDark() override { return false; }
    bool modal = false;
};

// Songs and a player, for windows of either kind.
class LyricsSongs : public LibraryFixture
{
protected:
    LyricsSongs()
    {
        player::IsWinampRunning();
        player.Received();
    }
    ~LyricsSongs() override { player::LyricsWindowOpen = false; }

    // A song with an ID3v2 tag, with these lyrics in it.
    std::string WriteSong(const std::string &name, const std::string &lyrics) const
    {
        const std::string frame =
            Frame("USLT", std::string("\0eng\0", 5) + lyrics); // an empty description
        WriteFile(Song(name),
                  Id3v2(TextFrame("TIT2", "Title") + (lyrics.empty() ? "" : frame)) + Audio());
        return Song(name);
    }

    void Play(double seconds) { player.Answer(105, static_cast<std::int32_t>(seconds * 1000)); }

    static std::string Selected(const lyrics::LyricsForm &shown) { return SelectedIn(shown); }

    MemorySettings settings;
    ConfigFolder config;
    RecordingPlayer player;
};

class LyricsFixture : public LyricsSongs
{
protected:
    LyricsFixture() { platform::TheMachine().windows = &windows; }
    ~LyricsFixture() override { platform::TheMachine().windows = nullptr; }

    // The form in its second mode, over a song with these lyrics.
    std::string Setting(lyrics::LyricsForm &shown, const std::string &text)
    {
        std::string song = WriteSong("song.mp3", text);
        lyrics::SetTimes(shown, song);
        player.Received();
        return song;
    }

    ModalOrNot windows;
    FakeForms forms;
};

// The same, with a form that is not loaded yet.
class LyricsFormFixture : public LyricsFixture
{
protected:
    lyrics::LyricsForm form;
};

} // namespace tests
