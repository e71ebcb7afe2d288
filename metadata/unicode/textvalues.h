// metadata/unicode/textvalues.h - the texts of an ID3v2 frame as UTF-8, whichever of the four
// encodings they are stored in. No state.
// Source: "ID3 tag version 2.4.0 - Main Structure", section 4; the encodings 0 and 1 also in "ID3
// tag version 2.3.0", section 3.3.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

// The encoding byte in front of a text.
enum class Encoding {
    Latin1 = 0,  // one byte a character
    Utf16 = 1,   // with a byte order mark
    Utf16Be = 2, // high byte first, no mark
    Utf8 = 3,
};

// The encoding of that byte. A number over 3 is read as Latin1.
[[nodiscard]] Encoding EncodingOf(unsigned char byte);

// `bytes` as UTF-8, terminators included. Latin-1 is read with the code page in use, which for
// western languages has more characters at the same places; where the bytes are valid UTF-8 with a
// character of several bytes they are taken as UTF-8, which many programs write there. UTF-16
// without its mark takes the byte order that gives more ASCII characters, low byte first where both
// give the same. A surrogate without its partner becomes U+FFFD, an odd last byte is left out.
// UTF-8 that is not valid is read as Latin-1.
[[nodiscard]] std::string DecodeText(Encoding encoding, std::string_view bytes);

// The text up to its terminator (one NUL byte, in UTF-16 two at an even offset), and the bytes
// after it. Without a terminator: all of `bytes`, and nothing after it.
struct TerminatedText {
    std::string_view text;
    std::string_view rest;
};
[[nodiscard]] TerminatedText CutAtTerminator(Encoding encoding, std::string_view bytes);

// A frame's values after this many are ignored; empty ones count as well.
inline constexpr std::size_t kMostValues = 1000;

// The values of a text frame: one, or several with a terminator between them. Empty ones are left
// out. In UTF-16 a value without a byte order mark takes the order of the value before it.
[[nodiscard]] std::vector<std::string> DecodeValues(Encoding encoding, std::string_view bytes);

// The same values as the one text that a field shows, with "; " between them. `before` is a text of
// the same encoding in front of them: its byte order mark counts where the first value has none.
[[nodiscard]] std::string DecodeJoined(Encoding encoding, std::string_view bytes,
                                       std::string_view before = {});

} // namespace metadata::unicode
