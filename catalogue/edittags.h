// catalogue/edittags.h - updates the rows of a song after its tags were written. No state.
#pragma once

#include "catalogue/recordset.h"
#include "metadata/mp3info.h"
#include "metadata/records.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// The longest text of a tag that a row keeps, except for lyrics: only their column is meant for
// long texts. In characters; a file byte is one.
inline constexpr std::size_t kLongestText = 32767;

// The seven texts of a tag in the order of the columns, as UTF-8; `genre` (of the tag's kind of
// texts) takes the place of the tag's genre. Longer texts than a row keeps are cut.
std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre);

// One text of a tag as a row keeps it: UTF-8, cut to kLongestText. Not for lyrics, which are kept
// whole.
std::string TagValue(const std::string &field, metadata::TextKind kind);

// Makes `song.id3v2` the tags of the song in their common form. If it has an ID3v1 tag alone, that
// is copied, except for the lyrics: its used texts, and the genre as a number in text form, or in
// words when the record is UTF-8. If it has both, see metadata::FillFromID3v1.
void PutTagsTogether(metadata::SongInfo &song);

// Writes the values of `tag` to the rows of `path`, the genre by its name: runs "Edit1", then
// "Edit2" (which does not change the artist of rows marked as duplicates).
// Errors: kDeviceIoError with the ErrorMessage of the first one that failed; both are run in any
// case.
void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path);

} // namespace catalogue
