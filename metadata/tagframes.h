// metadata/tagframes.h - the ID3v2 tag as it is written: new frames first, then the rest of the old
// body. All texts are file bytes, positions one-based. No state.
#pragma once

#include "metadata/records.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace metadata
{

// `value` in 4 characters, most significant first, each counting `base` times the next one (256 or
// 128); the first one gets everything above the other three.
// Errors: kInvalidCall when that is more than 255, or `value` is negative.
[[nodiscard]] std::string NumberToBytes(std::int64_t value, int base);

// Appends a version 3 frame: identifier, length of the data + 1, no flags, encoding 0, data.
void AppendFrame(std::string &frames, std::string_view identifier, std::string_view data);

// Cuts the first frame of that name out of `body` by the geometry of `majorVersion`; also returns
// the new body. Where a frame runs past the end, and with a version other than 2 and 3, the body
// ends where the identifier begins. A frame whose size cannot be read stays. "COMM" is handled
// differently, deliberately: of every frame with an empty description only the header is cut; its
// data stays in the body as loose bytes.
std::string &RemoveFrame(std::string &body, std::string_view identifier, int majorVersion);

// Cuts the frames, by their names of version 3, of the fields that have a text in `before` and none
// in `now` out of `body`, as RemoveFrame does. Returns whether there was such a field.
bool RemoveEmptied(std::string &body, const ID3v2Tag &before, const ID3v2Tag &now,
                   int majorVersion);

// The whole new tag of version 3, header included: the fields of `tag`, then the rest of `body`.
// Frames that are written again are removed from `body` first, except the comment: the new one
// comes before the old one. An empty field writes no frame, and its old frame stays; the genre is
// always written. Changes `tag`: a Genre of -1 becomes "255" (and is written as "(255)").
// Errors: kInvalidCall when the length of the body does not fit into 4 characters, the first of 8
// bits, the others of 7.
[[nodiscard]] std::string BuildID3v2Tag(std::string body, ID3v2Tag &tag, int majorVersion);

} // namespace metadata
