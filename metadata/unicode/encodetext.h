// metadata/unicode/encodetext.h - texts as an ID3v2.3 tag stores them. No state. Source: "ID3 tag
// version 2.3.0", section 3.3.
#pragma once

#include "metadata/unicode/textvalues.h"

#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

// Latin1 where all `texts` (UTF-8) fit in it and DecodeText reads the same texts again, else Utf16.
[[nodiscard]] Encoding EncodingFor(const std::vector<std::string_view> &texts);

// `utf8` in `encoding`, which is Latin1, or Utf16 (with a byte order mark). Without a terminator.
[[nodiscard]] std::string EncodeText(Encoding encoding, std::string_view utf8);

// The bytes between two texts: one NUL, in UTF-16 two.
[[nodiscard]] std::string_view Terminator(Encoding encoding);

// The two flag bytes of a frame of version 2.3 (section 3.3.1).
struct FrameFlags {
    unsigned status = 0, format = 0;
};
// A whole frame of version 2.3, header included. `id` has four characters.
[[nodiscard]] std::string MakeFrame23(std::string_view id, std::string_view data,
                                      FrameFlags flags = {});

} // namespace metadata::unicode
