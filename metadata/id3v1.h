// metadata/id3v1.h - the fixed 128-byte tag at the end of an MP3 file: its fields out of the bytes,
// and its bytes out of the fields. All texts are file bytes. No state.
#pragma once

#include "metadata/records.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace metadata
{

inline constexpr std::size_t kID3v1Bytes = 128;

// Fills every field but Header from `image`, the 128 bytes of a tag that begins with "TAG": blanks
// at both ends are cut and the field is padded with blanks to its width again; NULs stay. Comment
// is 29 characters and Track the byte after it, also where the tag is of the kind without a track.
// Errors: none. `image` shorter than 128 bytes reads as if NULs followed.
void ReadID3v1Fields(std::string_view image, ID3v1Tag &tag);

// The 128 bytes of `tag`: "TAG", the texts cut to 30, 30, 30, 4 and 28 characters, trimmed of
// blanks and filled with NULs, a NUL, the track, the genre (its low byte). Changes `tag`: a Genre
// of -1 becomes 255; the texts are left trimmed and padded to their width.
[[nodiscard]] std::string BuildID3v1Tag(ID3v1Tag &tag);

} // namespace metadata
