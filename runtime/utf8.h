// runtime/utf8.h - reading UTF-8 one character at a time, and texts made safe to show. No state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace runtime
{

// The length in bytes of the character at the start of `text`; its code point is written to
// `codePoint`.
// Returns: 0 when there is no valid UTF-8 character; `codePoint` has no meaning then.
int NextCharacter(std::string_view text, std::int32_t &codePoint);

// Appends the character with this code point, which must be a valid one, to `text`.
void AppendCharacter(std::int32_t codePoint, std::string &text);

// The number of bytes below 0x80 at the start of `text`.
std::size_t AsciiLength(std::string_view text);

// Whether all bytes are below 0x80.
bool IsAscii(std::string_view text);

// Whether `text` is well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms).
bool IsUtf8(std::string_view text);

// Whether the byte, one of a UTF-8 text, is not the first one of its character.
constexpr bool ContinuesCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

// The number of characters of `text`, which is UTF-8: of the bytes that do not continue one.
std::size_t CountCharacters(std::string_view text);

// The first `count` characters of `text`, all of it where it has fewer; a view into `text`.
std::string_view LeftCharacters(std::string_view text, std::size_t count);

// `text` made safe to show in one line: each control character, and each byte of 0x80 to 0x9F that
// is not part of valid UTF-8, is written as "\x" and two hexadecimal digits. No name of a file can
// then control a terminal or add a line to a report. Everything else stays as it is.
std::string ShownText(std::string_view text);

// The same, but tabs and line ends (CR, LF) stay.
std::string ShownLines(std::string_view text);

} // namespace runtime
