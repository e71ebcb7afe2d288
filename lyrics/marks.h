// lyrics/marks.h - the marks that a user made in a form and where they are kept: the draft, and the
// song's file. What the buttons and the closing of lyrics/lyricsform.h are made of.
#pragma once

#include "lyrics/lyricsform.h"

#include <string>

namespace lyrics
{

// While one lives, the form is busy: it must not go away.
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

// Has the user told of a failure once the caller is done, by the form's own timer; of several only
// the first. For what fails in a tick or in a change of the text, where nobody takes an error.
void TellLater(LyricsForm &form, const runtime::RuntimeError &failure);

// The lyrics in the tag of a file, each line end as CR LF (many programs write LF alone, which the
// rules of the marks do not take for one); empty when it has none or cannot be read.
std::string LyricsOfFile(const std::string &file);

// Where the song has a draft that is not what its file holds, asks whether to go on with it, and
// puts it into the box then.
void OfferDraft(LyricsForm &form);

// Writes `text` as the lyrics of the form's song, with both tags, by SaveTag, which tells what
// fails. Afterwards the form knows what the file holds; a draft that says the same is gone.
void SaveMarks(LyricsForm &form, const std::string &text);

} // namespace lyrics
