// lyrics/marks.h - the marks that a user sets in the lyrics of a song, and where they are saved: in
// the draft and in the song's file. The window is lyrics/lyricsform.h, whose handlers call this.
#pragma once

#include "lyrics/lyricsbox.h"
#include "metadata/records.h"
#include "runtime/error.h"
#include "ui/controls/timer.h"

#include <optional>
#include <string>

namespace lyrics
{

// The time from a change until its draft is written, in ms; the writing itself takes some more
// time.
inline constexpr int kDraftMs = 1000;

// The song whose times are being set, with the controls that its marks need.
struct MarkedSong {
    LyricsBox Lyrics;
    bool SettingTimes = false; // false while the window only follows a song
    std::string FileName;      // the song's path, bytes
    std::string MarkedText;    // the text when the last test began

    ui::Timer tmrDraft{kDraftMs};     // from a change of the marked text until its draft is written
    ui::Timer tmrReport{1};           // from a failure until the box that reports it
    bool testing = false;             // a test has taken the marks out of the box's text
    bool busy = false;                // a handler lets events run: the song must not be destroyed
    bool draftFailed = false;         // the user has been shown that the draft cannot be written
    std::string fileLyrics;           // the lyrics in the song's file when it was last read
    std::optional<std::string> draft; // the draft of the song, if it has one
    std::optional<runtime::RuntimeError> failure; // for tmrReport to report
};

// While one exists, the song is busy and must not be destroyed.
class BusyWhile
{
public:
    explicit BusyWhile(MarkedSong &song) : m_song(song), m_before(song.busy) { song.busy = true; }
    ~BusyWhile() { m_song.busy = m_before; }
    BusyWhile(const BusyWhile &) = delete;
    BusyWhile &operator=(const BusyWhile &) = delete;

private:
    MarkedSong &m_song;
    bool m_before;
};

// The text with the user's marks: that of the box, or MarkedText while a test has taken the marks
// out. Only while times are set.
[[nodiscard]] const std::string &MarksMade(const MarkedSong &song);

// Whether that text differs from the lyrics in the song's file.
[[nodiscard]] bool HasUnsavedMarks(const MarkedSong &song);

// Writes the draft now if a change has not been written yet. Errors: none. A failure is reported
// once, a little later, and writing the draft is tried again each second.
void FlushDraft(MarkedSong &song);

// To be called before the window closes or the program ends: asks whether to save unsaved marks.
// When a signal ends the program nothing is asked; the draft has them.
// Returns: false when the user cancels, when saving fails, or while the handler of a button is
// running.
[[nodiscard]] bool MayClose(MarkedSong &song);

// Reports a failure in a box after the caller has returned, by a timer of the song; of several
// failures only the first. For failures in a tick or in a change of the text, where no caller could
// catch an error.
void ReportLater(MarkedSong &song, const runtime::RuntimeError &failure);

// The lyrics in the tag of a file, as that kind of text, each line end as CR LF (many programs
// write LF alone, which is no line end by the rules of the marks); empty when it has none or
// cannot be read.
std::string LyricsOfFile(const std::string &file, metadata::TextKind kind);

// When the song has a draft that differs from its file, asks the user whether to continue with it;
// if so, the box gets its text.
void OfferDraft(MarkedSong &song);

// Writes `text` as the lyrics of the song into both tags with SaveTag, which reports
// failures itself. Afterwards `fileLyrics` is what the file has, and a draft that is equal to it is
// deleted.
void SaveMarks(MarkedSong &song, const std::string &text);

} // namespace lyrics
