// metadata/tagtext.h - the texts of tag records as UTF-8, and back: the border between the two
// kinds of texts. No state.
#pragma once

#include "metadata/records.h"
#include "metadata/unicode/tagtexts.h"

#include <string>
#include <string_view>

namespace metadata
{

// The kind of texts in the records that GetMP3Info returns now.
[[nodiscard]] TextKind KindInUse();

// `field`, which is of that kind, as UTF-8.
[[nodiscard]] std::string TextOf(TextKind kind, std::string_view field);

// UTF-8 as a field of that kind. In file bytes a character that the code page lacks becomes "?".
[[nodiscard]] std::string FieldOf(TextKind kind, std::string_view utf8);

// The genre of `tag` in words, as a field of its kind: GenreName of a record in file bytes. Empty
// when it is unset.
[[nodiscard]] std::string GenreField(const ID3v2Tag &tag);

// Converts all texts of a record from file bytes to UTF-8, or from UTF-8 to file bytes.
void ChangeKind(ID3v2Tag &tag, TextKind kind);

// A field of the ID3v1 record without the blanks and NULs that fill it up; file bytes.
[[nodiscard]] std::string UsedText(std::string_view field);

// The genre of an ID3v1 tag in words, ASCII: the name of its number. Empty for a number without
// one; 0 is "Blues", unlike GenreName.
[[nodiscard]] std::string GenreWords(const ID3v1Tag &tag);

// The ID3v1 tag in the common form, in UTF-8.
[[nodiscard]] ID3v2Tag TextsOf(const ID3v1Tag &tag);

// Puts the fields that were read by frames into a record in UTF-8. A field without a value is not
// changed in the record.
void TakeTexts(const unicode::TagTexts &texts, ID3v2Tag &tag);

// Fills the empty fields of a record in UTF-8 from the ID3v1 tag of the same file. A record in file
// bytes is not changed: without reading by frames the ID3v1 tag is used only when there is no ID3v2
// tag.
void FillFromID3v1(const ID3v1Tag &from, ID3v2Tag &to);

} // namespace metadata
