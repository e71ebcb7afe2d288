#include "tagedit/savetags.h"

#include "catalogue/edittags.h"
#include "metadata/genres.h"
#include "metadata/tagtext.h"
#include "metadata/tagwriter.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "tagedit/boxtext.h"

#include <limits>

namespace tagedit
{

namespace
{

constexpr std::string_view kNoGenre = "256"; // no number of a genre, so that none is written
constexpr std::string_view kUnset = "-1";

template <class Box>
std::string FieldOf(const Box &box, metadata::TextKind kind = metadata::TextKind::FileBytes)
{
    return EditedField(box.field, box.Text(), kind);
}

std::uint8_t TrackByte(const TagBox &box)
{
    const std::int16_t track = runtime::RoundToInt16(runtime::LeadingNumber(box.Text()));
    if (track < 0 || track > std::numeric_limits<std::uint8_t>::max())
        throw runtime::RuntimeError(runtime::kOverflow);
    return static_cast<std::uint8_t>(track);
}

// `text` as the field of a record, which has a fixed width.
std::string Fixed(std::string text, std::size_t width)
{
    text.resize(width, ' ');
    return text;
}

metadata::ID3v1Tag NewID3v1(Column &column)
{
    metadata::ID3v1Tag tag;
    tag.Title = Fixed(FieldOf(column.txtTitle), 30);
    tag.Artist = Fixed(FieldOf(column.txtArtist), 30);
    tag.Album = Fixed(FieldOf(column.txtAlbum), 30);
    tag.Year = Fixed(FieldOf(column.txtYear), 4);
    tag.Comment = Fixed(FieldOf(column.txtComment), 29);
    tag.Genre = metadata::GenreNumber(FieldOf(column.cmbGenre));
    tag.Track = TrackByte(column.txtTrack);
    return tag;
}

metadata::ID3v2Tag NewID3v2(Column &column)
{
    metadata::ID3v2Tag tag;
    tag.kind = column.kind;
    tag.Title = FieldOf(column.txtTitle, tag.kind);
    tag.Artist = FieldOf(column.txtArtist, tag.kind);
    tag.Album = FieldOf(column.txtAlbum, tag.kind);
    tag.Year = FieldOf(column.txtYear, tag.kind);
    tag.Comment = FieldOf(column.txtComment, tag.kind);
    tag.Genre = FieldOf(column.cmbGenre, tag.kind);
    if (tag.Genre.empty())
        tag.Genre = tag.kind == metadata::TextKind::Utf8 ? kUnset : kNoGenre;
    tag.Track = runtime::RoundToInt16(runtime::LeadingNumber(column.txtTrack.Text()));
    tag.Lyrics = FieldOf(column.txtLyrics, tag.kind);
    return tag;
}

// Whether the tags of the file are those that the editor was opened with.
bool AreTagsAsOpened(const metadata::RawTags &opened, const metadata::RawTags &now)
{
    return opened.failure == now.failure && opened.body == now.body && opened.texts == now.texts &&
           (now.body.empty() || opened.majorVersion == now.majorVersion) &&
           opened.fileHasID3v1 == now.fileHasID3v1 &&
           (!now.fileHasID3v1 || opened.id3v1Image == now.id3v1Image);
}

// Reads the file once more, right before it is written: its tags in the common form. The metadata
// module then has the tags that are in the file now, not those from the time when the editor was
// opened.
metadata::ID3v2Tag ReadTagsAgain(const EditedSong &song)
{
    metadata::SongInfo info = metadata::ReadSongInfo(song.File);
    catalogue::PutTagsTogether(info);
    return info.id3v2;
}

// The song could not be written, but its rows have the new values already: writes those of the file
// to them.
void PutRowsBack(const EditedSong &song, const metadata::ID3v2Tag &fileTag)
{
    const auto &update = metadata::TheTagWriterHooks().updateCatalogue;
    if (shell::TheGlobals().UpdateDBAfterEditing && update)
        update(fileTag, song.File);
}

SaveEnd OfferToReadAgain(std::string_view defaultText, std::string_view key)
{
    const platform::Answer answer = platform::TheMachine().desktop->MessageBox(
        shell::GetLanguageText(defaultText, key, "TagEditor"), platform::Buttons::YesNo, {},
        platform::BoxIcon::Exclamation);
    return answer == platform::Answer::Yes ? SaveEnd::ReadAgain : SaveEnd::Unsaved;
}

} // namespace

SaveEnd SaveTags(EditedSong &song)
{
    const metadata::ID3v2Tag fileTag = ReadTagsAgain(song);
    const metadata::RawTags now = metadata::CopyRawTags();
    if (now.failure == 0 && !AreTagsAsOpened(song.opened, now))
        return OfferToReadAgain(
            "The tags of this file were changed by another program since they were read. Nothing "
            "was written. Would you like to read them again? What was typed here is lost then.",
            "ChangedOutside");
    metadata::ID3v1Tag newID3v1 = NewID3v1(song.At(kID3v1));
    metadata::ID3v2Tag newID3v2 = NewID3v2(song.At(kID3v2));
    metadata::SaveTag(newID3v1, newID3v2, song.oldID3v1, song.oldID3v2, song.File,
                      song.At(kID3v1).HasID3Tag.Checked(), song.At(kID3v2).HasID3Tag.Checked(),
                      nullptr);
    switch (metadata::LastSaveResult()) {
    case metadata::SaveResult::Refused:
        return now.failure != 0 ? SaveEnd::Unsaved
                                : OfferToReadAgain("Would you like to read the tags of this file "
                                                   "again? What was typed here is lost then.",
                                                   "ReadAgain");
    case metadata::SaveResult::Declined:
        return SaveEnd::Unsaved;
    case metadata::SaveResult::Failed:
        PutRowsBack(song, fileTag);
        return SaveEnd::Unsaved;
    case metadata::SaveResult::Unchanged:
    case metadata::SaveResult::Written:
        break;
    }
    if (song.saved)
        song.saved(newID3v1, newID3v2);
    return SaveEnd::Saved;
}

} // namespace tagedit
