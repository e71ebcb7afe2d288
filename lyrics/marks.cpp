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
void DeleteSavedDraft(MarkedSong &song)
{
    FlushDraft(song);
    if (!song.draft)
        return;
    song.fileLyrics = LyricsOfFile(song.FileName, song.Lyrics.kind);
    if (song.fileLyrics != *song.draft)
        return;
    try {
        RemoveDraft(song.FileName, song.Lyrics.kind);
        song.draft.reset();
    } catch (const runtime::RuntimeError &) {
        return; // the draft equals the file, so it does no harm; the next save tries again
    }
}

} // namespace

void ReportLater(MarkedSong &song, const runtime::RuntimeError &failure)
{
    if (song.failure)
        return;
    song.failure.emplace(failure);
    song.tmrReport.SetEnabled(true);
}

std::string LyricsOfFile(const std::string &file, metadata::TextKind kind)
{
    const metadata::ID3v2Tag tag = metadata::ReadSongInfo(file).id3v2;
    return runtime::WithCrLf(metadata::FieldOf(kind, metadata::TextOf(tag.kind, tag.Lyrics)));
}

const std::string &MarksMade(const MarkedSong &song)
{
    return song.testing ? song.MarkedText : song.Lyrics.Text();
}

bool HasUnsavedMarks(const MarkedSong &song)
{
    return song.SettingTimes && MarksMade(song) != song.fileLyrics;
}

void OfferDraft(MarkedSong &song)
{
    song.tmrDraft.SetEnabled(false); // it must not write what the box holds over the draft
    song.draft = ReadDraft(song.FileName, song.Lyrics.kind);
    if (song.draft == song.fileLyrics)
        DeleteSavedDraft(song);
    else if (song.draft &&
             Desktop().MessageBox(
                 shell::GetLanguageText("The lyrics of this song have changes that were not saved "
                                        "to its file. Do you want to go on with them?",
                                        "DraftOffer", "Times"),
                 platform::Buttons::YesNo) == platform::Answer::Yes)
        song.Lyrics.SetText(*song.draft);
}

void FlushDraft(MarkedSong &song)
{
    if (!song.tmrDraft.Enabled() || !song.SettingTimes)
        return;
    const std::string text = MarksMade(song);
    if (song.draft ? text == *song.draft : text == song.fileLyrics) {
        song.tmrDraft.SetEnabled(false);
        return;
    }
    try {
        WriteDraft(song.FileName, text, song.Lyrics.kind);
        song.draft = text;
        song.draftFailed = false;
        song.tmrDraft.SetEnabled(false);
    } catch (const runtime::RuntimeError &failure) {
        if (song.draftFailed)
            return; // the timer tries again
        song.draftFailed = true;
        ReportLater(
            song, {failure.number,
                   shell::GetLanguageText("The changes to the lyrics could not be kept as a draft:",
                                          "DraftNotKept", "Times") +
                       " " + failure.description});
    }
}

void SaveMarks(MarkedSong &song, const std::string &text)
{
    metadata::SongInfo info = metadata::ReadSongInfo(song.FileName);
    info.id3v2.Lyrics =
        metadata::FieldOf(info.id3v2.kind, metadata::TextOf(song.Lyrics.kind, text));
    // By frames nothing but the lyrics is to change.
    const bool writeID3v1 = info.hasID3v1 || info.id3v2.kind == metadata::TextKind::FileBytes;
    const metadata::SongInfo old = info; // the lyrics as well: an empty text removes no frame
    metadata::SaveTag(info.id3v1, info.id3v2, old.id3v1, old.id3v2, song.FileName, writeID3v1, true,
                      nullptr);
    song.fileLyrics = LyricsOfFile(song.FileName, song.Lyrics.kind);
    DeleteSavedDraft(song);
}

bool MayClose(MarkedSong &song)
{
    if (!song.SettingTimes)
        return true;
    if (platform::IsEndRequested()) {
        FlushDraft(song);
        return true;
    }
    if (song.busy)
        return false;
    const BusyWhile busy(song);
    if (!HasUnsavedMarks(song)) {
        DeleteSavedDraft(song);
        return true;
    }
    const platform::Answer answer = Desktop().MessageBox(
        shell::GetLanguageText("The lyrics have changes that were not saved. Save them?", "Unsaved",
                               "Times"),
        platform::Buttons::SaveDiscardCancel);
    if (answer == platform::Answer::Save)
        SaveMarks(song, std::string(MarksMade(song)));
    return answer == platform::Answer::Discard ||
           (answer == platform::Answer::Save && !HasUnsavedMarks(song));
}

} // namespace lyrics
