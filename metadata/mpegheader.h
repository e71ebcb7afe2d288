// metadata/mpegheader.h - the audio header of an MP3 file: its position, and what its four bytes
// and the file's length mean. No state.
#pragma once

#include "metadata/records.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace metadata
{

// The search reads positions 1 to 5000 and, for the second byte of a pair, at 5001.
inline constexpr std::int64_t kLastSearchPosition = 5000;

// The one-based position of the first pair 0xFF 0xFA or 0xFF 0xFB that begins within the search's
// reach, also inside a tag; 0 when there is none. `head` is the file's beginning.
[[nodiscard]] std::int64_t FindHeaderPosition(std::string_view head);

// The cell of the bitrate table, in kbit/s: `row` 0 to 12, `column` 0 to 13; the empty text in rows
// without values.
// Returns: nothing when row or column is outside.
// Source: rows 0 to 2 are those of ISO/IEC 11172-3; the rows for the other versions were chosen for
// the program's first version: do not correct them.
[[nodiscard]] std::optional<std::string_view> BitrateCell(int row, int column);

// Fills the fields that are in the four bytes: Version to Original, Bitrate, CRC, Padding. The
// first byte is not used.
void DecodeHeader(const std::array<std::uint8_t, 4> &bytes, MPEGHeader &header);

// Computes FrameLength, Frames and Seconds from the fields before them. A division by zero or a
// value that does not fit leaves its field as it was. Without `sizeKnown` (the file is longer than
// FileSize can hold) Frames and Seconds stay as they were.
void ComputeLengths(bool sizeKnown, MPEGHeader &header);

} // namespace metadata
