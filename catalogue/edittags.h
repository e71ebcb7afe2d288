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

// The greatest length of a tag's text in a row, except for the lyrics: the columns are texts, not
// long texts. A file byte is one character.
inline constexpr std::size_t kLongestTextBytes = 32767;

// The seven texts of a tag in the order of the columns, converted from file bytes to UTF-8, with
// `genre` (file bytes) as the genre; each is cut to the greatest length.
std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre);

// A field of the ID3v1 record without the blanks and the NULs that fill its end; file bytes.
[[nodiscard]] std::string UsedText(std::string_view field);

// Copies an ID3v1 tag to the common form: its texts without the filling, its genre as a number in
// text form. The lyrics of `to` are not changed.
void CopyTag(const metadata::ID3v1Tag &from, metadata::ID3v2Tag &to);

// Writes the values of `tag` to the rows of `path`, the genre by its name: runs "Edit1", then
// "Edit2" (which does not change the artist of rows marked as duplicates).
// Errors: kDeviceIoError with the ErrorMessage of the first one that failed; both are run in any
// case.
void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path);

} // namespace catalogue
