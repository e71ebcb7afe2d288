// runtime/utf8.h - texts character by character, and as they are shown to a person. No state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace runtime
{

// The length in bytes of the valid UTF-8 character at the start of `text`, with its code point in
// `codePoint`. Returns: 0 when there is none; `codePoint` is not valid then.
int NextCharacter(std::string_view text, std::int32_t &codePoint);

// The number of bytes below 0x80 at the start of `text`.
std::size_t AsciiLength(std::string_view text);

// Whether all bytes are below 0x80.
bool IsAscii(std::string_view text);

// Whether `text` is well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms).
bool IsUtf8(std::string_view text);

// `text` for a reader of one line: every control character, and every byte of 0x80 to 0x9F that is
// not part of valid UTF-8, as "\x" and two hexadecimal digits a byte, so that no name of a file can
// drive a terminal or forge a line. All else stays byte for byte.
std::string ShownText(std::string_view text);

// The same with tabs and line ends (CR, LF) as they are.
std::string ShownLines(std::string_view text);

} // namespace runtime
