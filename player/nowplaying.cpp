#include "player/nowplaying.h"

#include "browser/mainform.h"
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "player/winampmod.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "shell/globals.h"

namespace player
{

bool LyricsWindowOpen = false;

namespace
{

constexpr std::string_view kSongPanel = "Playing";
constexpr std::string_view kTimePanel = "PlayingStatus";
constexpr std::string_view kPausedMark = " (paused)";
constexpr std::int32_t kPlayingState = 1, kPausedState = 3; // of GetPlayingState

struct State {
    std::string LastSongPlayed; // the path of the song that was playing at the last tick
    LyricsWindowCalls calls;
} state;

std::string TwoDigits(std::int32_t number)
{
    return std::string(runtime::Right("00" + std::to_string(number), 2));
}

std::string MinutesAndSeconds(float seconds)
{
    const std::int32_t whole = runtime::RoundToInt32(seconds);
    return TwoDigits(whole / 60) + ":" + TwoDigits(whole % 60);
}

metadata::ID3v2Tag TagOf(const std::string &path)
{
    metadata::SongInfo info = metadata::ReadSongInfo(path);
    if (info.hasID3v1)
        metadata::FillFromID3v1(info.id3v1, info.id3v2);
    return info.id3v2;
}

std::string TitleLine(const metadata::ID3v2Tag &tag)
{
    return metadata::TextOf(tag.kind, tag.Artist) + " - " + metadata::TextOf(tag.kind, tag.Title);
}

// The texts of the status bar have the marks of captions.
std::string SongText(const metadata::ID3v2Tag &tag)
{
    return "Playing:  " + ui::CaptionOf(TitleLine(tag));
}

ui::StatusBar &Bar()
{
    return browser::frmMain().SB;
}

bool SongPanelSays(std::string_view words)
{
    return Bar().Panel(kSongPanel).text.find(words) != std::string::npos;
}

void SetPanel(std::string_view panel, const std::string &text)
{
    if (Bar().Panel(panel).text != text)
        Bar().SetText(panel, text);
}

void UnloadLyrics()
{
    if (state.calls.unload)
        state.calls.unload();
}

void ShowLyrics(const std::string &path, const metadata::ID3v2Tag &tag)
{
    if (state.calls.show)
        state.calls.show(path, TitleLine(tag), tag.Lyrics);
}

// Shows the lyrics of a song that has just begun. Returns: false when an error ends the tick.
bool FollowSong(const std::string &path, const metadata::ID3v2Tag &tag)
{
    try {
        if (tag.Lyrics.empty())
            UnloadLyrics();
        else
            ShowLyrics(path, tag);
    } catch (const runtime::RuntimeError &error) {
        return error.number == runtime::kNonModalOverModal;
    }
    return true;
}

// A player that stops answering during a tick looks like one that is stopped and has no song. It
// counts as not running: what is shown stays.
bool HasStoppedAnswering()
{
    return !IsWinampRunning();
}

void ShowSameSong(const std::string &path)
{
    if (SongPanelSays("Not Playing."))
        SetPanel(kSongPanel, SongText(TagOf(path)));
    if (SongPanelSays("paused")) {
        const std::string &text = Bar().Panel(kSongPanel).text;
        // One character less than the length of the mark: trimming removes the blank before it.
        const auto kept =
            static_cast<long long>(text.size()) - static_cast<long long>(kPausedMark.size() - 1);
        SetPanel(kSongPanel, std::string(runtime::Trim(runtime::Left(text, std::max(0LL, kept)))));
    }
    const std::string times = GetPlayingTimeStatus();
    if (!HasStoppedAnswering())
        SetPanel(kTimePanel, times);
}

void ShowPlaying()
{
    const std::string path = GetCurrentSongPath();
    if (path.empty() && HasStoppedAnswering())
        return;
    if (path == state.LastSongPlayed) {
        ShowSameSong(path);
        return;
    }
    const metadata::ID3v2Tag tag = TagOf(path);
    if (!FollowSong(path, tag))
        return;
    SetPanel(kSongPanel, SongText(tag));
    state.LastSongPlayed = path;
}

void ShowBox(std::string_view words)
{
    platform::TheMachine().desktop->MessageBox(words);
}

} // namespace

std::string GetPlayingTimeStatus(float *position)
{
    const auto length = static_cast<float>(GetPlayingLength());
    const auto now = static_cast<float>(GetPlayingPosition() / 1000);
    if (position != nullptr)
        *position = now;
    return MinutesAndSeconds(now) + " / " + MinutesAndSeconds(length);
}

LyricsWindowCalls &TheLyricsWindowCalls()
{
    return state.calls;
}

void tmr_Playing_Timer()
{
    const QuestionBatch batch;
    if (!shell::TheGlobals().ShowLyricsAutomatically || !IsWinampRunning())
        return;
    if (GetPlayingState() == kPlayingState) {
        ShowPlaying();
        return;
    }
    if (GetPlayingState() == kPausedState) {
        if (!SongPanelSays("paused"))
            SetPanel(kSongPanel, Bar().Panel(kSongPanel).text + std::string(kPausedMark));
        return;
    }
    if (HasStoppedAnswering())
        return;
    SetPanel(kSongPanel, "Not Playing...");
    SetPanel(kTimePanel, "00:00 / 00:00");
}

void submnuShowLyricsCurrentSong_Click()
{
    if (!IsWinampRunning()) {
        ShowBox("Winamp is not running");
        return;
    }
    if ((GetPlayingState() & 1) == 0) {
        ShowBox("No song is playing");
        return;
    }
    const std::string path = GetCurrentSongPath();
    const metadata::ID3v2Tag tag = TagOf(path);
    if (tag.Lyrics.empty()) {
        ShowBox("The lyrics for that song weren't found");
        UnloadLyrics();
    } else if (!LyricsWindowOpen) {
        ShowLyrics(path, tag);
    }
}

void tmrRefreshList_Timer()
{
    if (IsWinampRunning())
        platform::TheMachine().files->Delete(GetWinampFolder() + "WINAMP.m3u");
    WritePlaylistFile();
}

void ResetNowPlaying()
{
    state = {};
    LyricsWindowOpen = false;
}

} // namespace player
