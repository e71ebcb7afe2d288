// metadata/unicode/tagtexts.h - which frame of an ID3v2 tag feeds which field. All texts are UTF-8.
// No state.
//
//   field     frame
//   title     TIT2
//   artist    TPE1
//   album     TALB
//   year      TDRC, else TYER, else TDRL; its first four digits
//   genre     TCON in all its written forms, see GenreOf
//   track     TRCK; the number in front of a "/"
//   comment   COMM; one without a description before others, then by language
//   lyrics    USLT, chosen in the same way; without one SYLT, as lines with time marks
//
// A text of several values has "; " between them. Where a tag holds a frame twice, the first one
// that has a text counts. Source: "ID3 tag version 2.4.0 - Native Frames", sections 4.2 to 4.10,
// with the version 2.2 and 2.3 documents for the names and forms that it dropped.
#pragma once

#include "metadata/unicode/framelist.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

// The fields found. No value: not in the tag, the record keeps its old one.
struct TagTexts {
    std::optional<std::string> title, artist, album, year, comment, lyrics;
    std::optional<std::string> genre;  // a number as text, or a genre in words
    std::optional<std::int16_t> track; // 1..32767

    bool operator==(const TagTexts &) const = default;
};

// What a choice between frames depends on.
struct ReadingWishes {
    std::string language = "eng"; // ISO 639-2, three letters in lower case: preferred over others
    double mpegFrameMs = 0; // the length of one audio frame, for times that count in frames; 0 =
                            // not known, such lyrics are read without time marks
};

// The fields of one tag.
[[nodiscard]] TagTexts FindTexts(const FrameList &list, const ReadingWishes &wishes);

// Takes from `more` each field that `texts` has no value for.
void FillMissing(TagTexts &texts, const TagTexts &more);

// The genre that the values of a TCON frame name: a number from 0 to 255 alone ("17", "(17)") as
// its digits; a number with a text behind it ("(4)Eurodisco") gives the text; "(RX)" or "RX" is
// "Remix",
// "(CR)" or "CR" "Cover"; "((" at the beginning of a text is "(". Several values are joined with ";
// ", numbers as their names where the genre table has them. Empty for values without any.
[[nodiscard]] std::string GenreOf(const std::vector<std::string> &values);

// Bytes of a file, for tags that are not at its beginning.
class FileBytesPort
{
public:
    virtual ~FileBytesPort() = default;
    // The file's length in bytes.
    virtual std::int64_t Length() = 0;
    // At most `count` bytes from the zero-based `position` on; fewer where the file ends or cannot
    // be read. The view is valid until the next call.
    virtual std::string_view Read(std::int64_t position, std::int64_t count) = 0;
};

// The fields of all ID3v2 tags of a file: those at its beginning, one behind the other, those that
// a SEEK frame leads to, and one with a footer at the end, in front of an ID3v1 tag. What an
// earlier tag gives counts, unless a later one says that it is an update. A tag that claims more
// than the file holds is read as far as it goes. At most 16 tags are read.
[[nodiscard]] TagTexts ReadTagTexts(FileBytesPort &file, const ReadingWishes &wishes);

} // namespace metadata::unicode
