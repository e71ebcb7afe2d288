// metadata/unicode/tagtexts.h - the frames of an ID3v2 tag from which each field is read. All texts
// are UTF-8. No state.
//
//   field     frame
//   title     TIT2
//   artist    TPE1
//   album     TALB
//   year      TDRC, else TYER, else TDRL; its first four digits; where none of them has four, the
//             text of the first one
//   genre     TCON in all its written forms, see GenreOf
//   track     TRCK; the number in front of a "/"
//   comment   COMM; one without a description before others, then by language
//   lyrics    USLT, chosen by the same rule; without one SYLT, as lines with time marks
//
// A text of several values has "; " between them. When a tag has a frame twice, the first one with
// a text is used; when a file has several tags, the first tag that has the field, except for
// comment and lyrics, which are chosen among those of all tags. Source: "ID3 tag version 2.4.0 -
// Native Frames", sections 4.2 to 4.10, with the version 2.2 and 2.3 documents for the names and
// forms that it does not have any more.
#pragma once

#include "metadata/unicode/framelist.h"
#include "metadata/unicode/tagwalk.h"

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

// What the choice between frames depends on.
struct ReadingOptions {
    std::string language = "eng"; // ISO 639-2, three letters in lower case: preferred over others
    double mpegFrameMs = 0; // the length of one audio frame, for times that count in frames; 0 =
                            // not known, such lyrics are read without time marks
};

// Whether the tag has a field that only reading by frames decodes: of another version than 2.3, not
// in Latin-1, packed, or UTF-8 in a frame that is marked as Latin-1. `tag` as for ReadFrames.
[[nodiscard]] bool NeedsFrames(const TagHeader &header, std::string_view tag);

// The genre that the values of a TCON frame name (2.3, section 4.2.1; 2.4, section 4.2.3): a number
// from 0 to 255 alone ("17", "(17)") as its digits; a number with a text after it
// ("(4)Eurodisco") gives the text; "(RX)" or "RX" is "Remix", "(CR)" or "CR" "Cover"; "((" at the
// beginning of a text is "(". Several values are joined with "; ", numbers as their names where the
// genre table has them. Empty for values without any.
[[nodiscard]] std::string GenreOf(const std::vector<std::string> &values);

// A genre that GenreOf gave in words: a number as its name, where the genre table has one.
[[nodiscard]] std::string GenreInWords(const std::string &genre);

// The COMM or USLT frame whose text is the comment or the lyrics, out of these lists in the order
// in which they count; null without one.
[[nodiscard]] const Frame *ChosenFrame(const std::vector<const FrameList *> &lists,
                                       std::string_view id, const ReadingOptions &options);

// The texts of a text frame, in UTF-8; empty for one without any, and for one that cannot be read.
[[nodiscard]] std::vector<std::string> ValuesOf(const Frame &frame);

// Several values as the one text that a field shows, joined with "; ".
[[nodiscard]] std::string Joined(const std::vector<std::string> &values);

// The fields of all ID3v2 tags of a file, as WalkTags finds them. A field is taken from the first
// tag that has it, unless a later tag is marked as an update. A tag that claims more than the file
// holds is read to the end of the file. No value: the file has no tag with a body.
[[nodiscard]] std::optional<TagTexts> ReadTagTexts(FileBytesPort &file,
                                                   const ReadingOptions &options);

} // namespace metadata::unicode
