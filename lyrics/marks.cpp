#include "lyrics/marks.h"

#include "lyrics/drafts.h"
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "metadata/tagwriter.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "runtime/text.h"
#include "shell/language.h"

namespace lyrics
{

namespace
{

platform::Desktop &Desktop()
{
    return *platform::TheMachine().desktop;
}

// Deletes the draft when the song's file has the same lyrics.
void DeleteSavedDraft(LyricsForm &form)
{
    FlushDraft(form);
    if (!form.draft)
        return;
    form.fileLyrics = LyricsOfFile(form.FileName, form.Lyrics.kind);
    if (form.fileLyrics != *form.draft)
        return;
    try {
        RemoveDraft(form.FileName, form.Lyrics.kind);
        form.draft.reset();
    } catch (const runtime::RuntimeError &) {
        return; // the draft equals the file, so it does no harm; the next save tries again
    }
}

} // namespace

void ReportLater(LyricsForm &form, const runtime::RuntimeError &failure)
{
    if (form.failure)
        return;
    form.failure.emplace(failure);
    form.tmrReport.SetEnabled(true);
}

std::string LyricsOfFile(const std::string &file, metadata::TextKind kind)
{
    const metadata::ID3v2Tag tag = metadata::ReadSongInfo(file).id3v2;
    return runtime::WithCrLf(metadata::FieldOf(kind, metadata::TextOf(tag.kind, tag.Lyrics)));
}

const std::string &MarksMade(const LyricsForm &form)
{
    return form.testing ? form.MarkedText : form.Lyrics.Text();
}

bool HasUnsavedMarks(const LyricsForm &form)
{
    return form.SettingTimes && MarksMade(form) != form.fileLyrics;
}

void OfferDraft(LyricsForm &form)
{
    form.tmrDraft.SetEnabled(false); // it must not write what the box holds over the draft
    form.draft = ReadDraft(form.FileName, form.Lyrics.kind);
    if (form.draft == form.fileLyrics)
        DeleteSavedDraft(form);
    else if (form.draft &&
             Desktop().MessageBox(
                 shell::GetLanguageText("The lyrics of this song have changes that were not saved "
                                        "to its file. Do you want to go on with them?",
                                        "DraftOffer", "Times"),
                 platform::Buttons::YesNo) == platform::Answer::Yes)
        form.Lyrics.SetText(*form.draft);
}

void FlushDraft(LyricsForm &form)
{
    if (!form.tmrDraft.Enabled() || !form.SettingTimes)
        return;
    const std::string text = MarksMade(form);
    if (form.draft ? text == *form.draft : text == form.fileLyrics) {
        form.tmrDraft.SetEnabled(false);
        return;
    }
    try {
        WriteDraft(form.FileName, text, form.Lyrics.kind);
        form.draft = text;
        form.draftFailed = false;
        form.tmrDraft.SetEnabled(false);
    } catch (const runtime::RuntimeError &failure) {
        if (form.draftFailed)
            return; // the timer tries again
        form.draftFailed = true;
        ReportLater(
            form, {failure.number,
                   shell::GetLanguageText("The changes to the lyrics could not be kept as a draft:",
                                          "DraftNotKept", "Times") +
                       " " + failure.description});
    }
}

void SaveMarks(LyricsForm &form, const std::string &text)
{
    metadata::SongInfo song = metadata::ReadSongInfo(form.FileName);
    song.id3v2.Lyrics =
        metadata::FieldOf(song.id3v2.kind, metadata::TextOf(form.Lyrics.kind, text));
    // By frames nothing but the lyrics is to change.
    const bool writeID3v1 = song.hasID3v1 || song.id3v2.kind == metadata::TextKind::FileBytes;
    const metadata::SongInfo old = song; // the lyrics as well: an empty text removes no frame
    metadata::SaveTag(song.id3v1, song.id3v2, old.id3v1, old.id3v2, form.FileName, writeID3v1, true,
                      nullptr);
    form.fileLyrics = LyricsOfFile(form.FileName, form.Lyrics.kind);
    DeleteSavedDraft(form);
}

bool MayClose(LyricsForm &form)
{
    if (!form.Loaded() || !form.SettingTimes)
        return true;
    if (platform::IsEndRequested()) {
        FlushDraft(form);
        return true;
    }
    if (form.busy)
        return false;
    const BusyWhile busy(form);
    if (!HasUnsavedMarks(form)) {
        DeleteSavedDraft(form);
        return true;
    }
    const platform::Answer answer = Desktop().MessageBox(
        shell::GetLanguageText("The lyrics have changes that were not saved. Save them?", "Unsaved",
                               "Times"),
        platform::Buttons::SaveDiscardCancel);
    if (answer == platform::Answer::Save)
        SaveMarks(form, std::string(MarksMade(form)));
    return answer == platform::Answer::Discard ||
           (answer == platform::Answer::Save && !HasUnsavedMarks(form));
}

} // namespace lyrics
