// lyrics/lyricsform.h - frmLyrics without its widgets: its controls and fields, what its buttons
// and timers do, and what happens when it closes. Lyrics are file bytes or UTF-8 (LyricsBox::kind),
// paths are bytes, all other texts are UTF-8.
#pragma once

#include "lyrics/marks.h"
#include "lyrics/timedlyrics.h"
#include "ui/controls/form.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lyrics
{

inline constexpr int kMarkKey = 120; // F9; does what cmdSetIt does
inline constexpr int kTickMs = 250;

// Captions of the buttons with symbols. The handlers read the state of the form from them.
inline constexpr std::string_view kSaveSymbol = "\xC3\x8D"; // character 205
inline constexpr std::string_view kTestSymbol = "~";
inline constexpr std::string_view kStopSymbol = "<";
inline constexpr std::string_view kPauseSymbol = ";";
inline constexpr std::string_view kContinueSymbol = "4";

struct LyricsForm : ui::Form, MarkedSong {
    LyricsForm();
    ~LyricsForm() override; // closes the window
    LyricsForm(const LyricsForm &) = delete;
    LyricsForm &operator=(const LyricsForm &) = delete;

    ui::Timer showTimes{kTickMs};
    ui::Button cmdSetTimes, cmdSetIt, cmdSave, cmdTest, cmdPause;

    std::optional<TimesByKey> Times; // nothing when there is no text with times

    // --- Not part of the window's first design.
    ui::Label lblKey; // says which key sets a mark

    std::function<void(const std::string &file)> newSettingWindow; // for cmdSetTimes
};

// Loads the form again and shows the lyrics of the song `title`, which is playing; each line end
// (CR or LF alone too) becomes CR LF. If a mark cannot be parsed, a box reports it after the caller
// has returned, and the text is shown as far as it was parsed. Errors: kNonModalOverModal (401)
// while a modal window is open; the form is unchanged then.
void FollowLyrics(LyricsForm &form, std::string_view title, std::string_view lyrics);

// Changes a new form to the mode in which times are set for `file`, shows it, and plays the song
// from its beginning. When there is a draft that differs from the song's file, the user is asked
// first whether to use it.
// Errors: kNonModalOverModal (401); those of EnqueueFile.
void SetTimes(LyricsForm &form, const std::string &file);

// The events of the window and its controls. The constructor connects them.
void Form_Load(LyricsForm &form); // which buttons there are; `Times` is empty when following a song
void Form_Unload(LyricsForm &form); // empties `Times`, stops the timers
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
// starts `showTimes` when there are entries, else stops it.
// Errors: those of ParseMarks. The box then has the text as it is at the failing mark, and is
// enabled again.
void ParseTimes(LyricsForm &form);

} // namespace lyrics
