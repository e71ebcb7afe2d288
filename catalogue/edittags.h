// catalogue/edittags.h - updates the rows of a song after its tags were written. No state.
#pragma once

#include "catalogue/recordset.h"
#include "metadata/records.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// The most that a row keeps of a tag's text, but for its lyrics: the column is a text, no long
// text. In characters; a file byte is one.
inline constexpr std::size_t kLongestText = 32767;

// The seven texts of a tag in the order of the columns, as UTF-8, with `genre` (of the tag's kind
// of texts) in its place; what is longer than a row keeps is cut off.
std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre);

// One text of a tag as a row keeps it: UTF-8, what is longer is cut off. Not for lyrics, which are
// kept whole.
std::string TagValue(const std::string &field, metadata::TextKind kind);

// The ID3v1 tag in the common form: the used texts as the kind of `to`, the genre as a number in
// text form, where `to` is UTF-8 in words. The lyrics of `to` stay.
void CopyTag(const metadata::ID3v1Tag &from, metadata::ID3v2Tag &to);

// Writes the values of `tag` to the rows of `path`, the genre by its name: runs "Edit1", then
// "Edit2" (which does not change the artist of rows marked as duplicates).
// Errors: kDeviceIoError with the ErrorMessage of the first one that failed; both are run in any
// case.
void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path);

} // namespace catalogue
