// lyrics/lyricsform.h - frmLyrics without its window: its controls and fields, and what its
// buttons, timers and closing do. Lyrics are file bytes, paths the file system's bytes, all else
// UTF-8.
#pragma once

#include "lyrics/lyricsbox.h"
#include "lyrics/timedlyrics.h"
#include "runtime/error.h"
#include "ui/controls/form.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lyrics
{

inline constexpr int kMarkKey = 120; // F9, which presses cmdSetIt
inline constexpr int kTickMs = 250;
inline constexpr int kDraftMs = 1000; // from a change to its draft; writing takes some time more

// Captions of the buttons with symbols. They are the state that the handlers read.
inline constexpr std::string_view kSaveSymbol = "\xC3\x8D"; // character 205
inline constexpr std::string_view kTestSymbol = "~";
inline constexpr std::string_view kStopSymbol = "<";
inline constexpr std::string_view kPauseSymbol = ";";
inline constexpr std::string_view kContinueSymbol = "4";

struct LyricsForm : ui::Form {
    LyricsForm();
    ~LyricsForm() override; // closes its window
    LyricsForm(const LyricsForm &) = delete;
    LyricsForm &operator=(const LyricsForm &) = delete;

    LyricsBox Lyrics;
    ui::Timer showTimes{kTickMs};
    ui::Button cmdSetTimes, cmdSetIt, cmdSave, cmdTest, cmdPause;

    bool SettingTimes = false;
    std::string FileName;            // the song whose times are being set
    std::optional<TimesByKey> Times; // nothing when it was dropped
    std::string MarkedText;          // as it was when the last test started

    // --- Of our own.
    ui::Timer tmrDraft{kDraftMs};     // runs from a change of the marked text to its draft
    ui::Timer tmrTell{1};             // runs from a failure to the box that tells it
    ui::Label lblKey;                 // says which key sets a mark
    bool testing = false;             // the box holds what a test left of MarkedText
    bool busy = false;                // a button's work lets events run: the form must outlive them
    bool draftFailed = false;         // the user knows that the draft cannot be written
    std::string fileLyrics;           // what the song's file holds, as last read
    std::optional<std::string> draft; // what the song's draft holds, where there is one
    std::optional<runtime::RuntimeError> failure; // for tmrTell

    std::function<void(const std::string &file)> newSettingWindow; // for cmdSetTimes
};

// The song that plays, `title`, has these lyrics: shows them, in a form that is loaded anew, each
// line end (CR or LF alone as well) as CR LF. Marks that cannot be parsed are told once the caller
// is done, over the text as far as it was parsed. Errors: kNonModalOverModal (401) while a modal
// window is up; the form is then as it was.
void FollowLyrics(LyricsForm &form, std::string_view title, std::string_view lyrics);

// Puts a fresh form into the mode of setting times for `file`, shows it, and plays the song from
// its beginning. A draft that the song's file does not hold is offered first. Errors:
// kNonModalOverModal (401); those of EnqueueFile.
void SetTimes(LyricsForm &form, const std::string &file);

// The events of the window and its controls. The constructor connects them.
void Form_Load(LyricsForm &form);   // buttons by the mode; `Times` empty where it follows
void Form_Unload(LyricsForm &form); // drops `Times`, stops the timers
void Form_Resize(LyricsForm &form);
bool Form_KeyDown(LyricsForm &form, const ui::Key &key);
void Lyrics_Change(LyricsForm &form);
void showTimes_Timer(LyricsForm &form);
void cmdSetTimes_Click(LyricsForm &form);
void cmdSetIt_Click(LyricsForm &form);
void cmdTest_Click(LyricsForm &form);
void cmdPause_Click(LyricsForm &form);
void cmdSave_Click(LyricsForm &form);

// Takes the marks out of `Lyrics` into `Times`, unless `cmdSetTimes` or the box is disabled; then
// starts `showTimes` where there are entries, else stops it.
// Errors: those of ParseMarks. The box holds the text at the failing mark, and is enabled again.
void ParseTimes(LyricsForm &form);

// The text with marks that the user has made: the box's, while a test has taken the marks out
// `MarkedText`. Only while times are being set.
[[nodiscard]] const std::string &MarksMade(const LyricsForm &form);

// Whether that differs from what the song's file holds.
[[nodiscard]] bool HasUnsavedMarks(const LyricsForm &form);

// Writes the draft now where a change waits for it. Errors: none; a failure is told later and once,
// and the draft tried again each second.
void FlushDraft(LyricsForm &form);

// Before the window closes or the program ends: asks what becomes of unsaved marks. False when the
// user cancels, when they could not be saved, or while a button's work is under way. When a signal
// asked for the end nothing is asked, and the draft keeps them.
[[nodiscard]] bool MayClose(LyricsForm &form);

} // namespace lyrics
