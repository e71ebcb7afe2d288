// metadata/id3v2.h - eight fields out of the body of an ID3v2 tag. The body is one text in which
// each frame's identifier is looked for, first match wins; frame boundaries, flags of the tag,
// padding and text encodings play no part. All texts are file bytes, positions are one-based. No
// state.
#pragma once

#include "metadata/records.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace metadata
{

inline constexpr std::int64_t kTagHeaderBytes = 10;
inline constexpr std::size_t kMajorVersionIndex = 3; // of the byte in the header

// The length in bytes of the body of the ID3v2 tag at the beginning of a file, as the tag's header
// says; 0 when the size does not fit 32 bits.
// Returns: nothing when `start`, the file's first bytes, does not contain a whole header.
[[nodiscard]] std::optional<std::int64_t> FindBodyBytes(std::string_view start);

// Where the parts of a frame are, counted from the first character of its identifier.
struct FrameGeometry {
    int sizeOffset = 0; // of the 4 characters that are read as the size
    int textOffset = 0; // of the text
};

// 5 and 7 for version 2, 4 and 11 for version 3, 0 and 0 for any other.
[[nodiscard]] FrameGeometry GeometryOf(int majorVersion);

// The value of the first 4 characters of `text`, most significant first; each character counts
// `base` times the next one (256 or 128), with its value 0 to 255 in both cases.
// Errors: kInvalidCall when there are fewer than 4; kOverflow when the value does not fit a signed
// 32-bit number.
[[nodiscard]] std::int32_t BytesToNumber(std::string_view text, int base);

// The same; nothing when that fails.
[[nodiscard]] std::optional<std::int32_t> FindNumber(std::string_view text, int base);

// The first position at or after `start` (1 or more) where `identifier` is in `body`; 0 when
// there is none. The empty identifier is found at `start`, unless the body ends before it. Fast
// also where the identifier is absent from a long picture.
[[nodiscard]] long long FindIdentifier(long long start, std::string_view body,
                                       std::string_view identifier);

// Whether the frame at `position` is compressed or encrypted: bit 0x80 or 0x40 of the character 9
// places after it. Only frames of version 3 can be; false where the body ends before that
// character.
[[nodiscard]] bool IsFrameUnreadable(long long position, std::string_view body, int majorVersion);

// The fields found in a body. No value: the record keeps its old one. The views are into the body.
struct FrameFindings {
    std::optional<std::string_view> title, artist, album, year, comment, lyrics;
    std::optional<std::string> genre;
    std::optional<std::int16_t> track;
};

// Looks for the fields in `body`. A version other than 2 and 3 finds nothing.
// Errors: none; a damaged frame leaves its field as it was, or gives the bytes that are in its
// place.
[[nodiscard]] FrameFindings FindFrames(std::string_view body, int majorVersion);

// Fills `tag` with the fields found in `body`; a field that is not there keeps its value.
// `known`: what FindFrames has found in this body before; filled when it has no value.
void ReadID3v2Frames(std::string_view body, int majorVersion, ID3v2Tag &tag,
                     std::optional<FrameFindings> *known = nullptr);

} // namespace metadata
