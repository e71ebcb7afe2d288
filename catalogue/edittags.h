// catalogue/edittags.h - the rows of a song that the tag writer has just written. No state.
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
// text. A file byte is one character.
inline constexpr std::size_t kLongestTextBytes = 32767;

// The seven texts of a tag in the order of the columns, from file bytes to text, with `genre` (file
// bytes) in its place; what is longer than a row keeps is cut off.
std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre);

// A field of the ID3v1 record without the blanks that fill it and without the NULs that filled the
// tag's; file bytes.
[[nodiscard]] std::string UsedText(std::string_view field);

// The ID3v1 tag in the common form: the used texts, the genre as a number in text form. The lyrics
// of `to` stay.
void CopyTag(const metadata::ID3v1Tag &from, metadata::ID3v2Tag &to);

// Brings the rows of `path` to the values of `tag`, the genre by its name: "Edit1", then "Edit2"
// (which leaves the artist of duplicated entries).
// Errors: kDeviceIoError with the ErrorMessage of the first one that failed; both are run.
void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path);

} // namespace catalogue
