// lyrics/marks.h - the marks that a user has set in a form, and where they are saved: in the draft
// and in the song's file. The handlers of lyrics/lyricsform.h call this.
#pragma once

#include "lyrics/lyricsform.h"

#include <string>

namespace lyrics
{

// While one exists, the form is busy and must not be destroyed.
class BusyWhile
{
public:
    explicit BusyWhile(LyricsForm &form) : m_form(form), m_before(form.busy) { form.busy = true; }
    ~BusyWhile() { m_form.busy = m_before; }
    BusyWhile(const BusyWhile &) = delete;
    BusyWhile &operator=(const BusyWhile &) = delete;

private:
    LyricsForm &m_form;
    bool m_before;
};

// Reports a failure in a box after the caller has returned, by a timer of the form; of several
// failures only the first. For failures in a tick or in a change of the text, where no caller could
// catch an error.
void ReportLater(LyricsForm &form, const runtime::RuntimeError &failure);

// The lyrics in the tag of a file, as that kind of text, each line end as CR LF (many programs
// write LF alone, which is no line end by the rules of the marks); empty when it has none or
// cannot be read.
std::string LyricsOfFile(const std::string &file, metadata::TextKind kind);

// When the song has a draft that differs from its file, asks the user whether to continue with it;
// if so, the box gets its text.
void OfferDraft(LyricsForm &form);

// Writes `text` as the lyrics of the form's song into both tags with SaveTag, which reports
// failures itself. Afterwards `fileLyrics` is what the file has, and a draft that is equal to it is
// deleted.
void SaveMarks(LyricsForm &form, const std::string &text);

} // namespace lyrics
