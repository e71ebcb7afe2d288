// runtime/codepage.h - the border between file bytes (one character per byte, as tags and lyrics
// are in a file) and text (UTF-8). Every byte 0-255 survives the way to text and back.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// U+FEFF in UTF-8. Some editors put it at the start of what they save; it belongs to no text.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The code page in force: 1250 to 1258 or 874. 1252 until UseCodePage says otherwise.
int CodePage();

// Puts `codePage` in force; a number without a table puts 1252 in force.
void UseCodePage(int codePage);

// The single-byte code page for a POSIX locale name such as "cs_CZ.UTF-8"; 1252 for any
// language that has none of its own. Source: the default ANSI code pages per language.
int CodePageOfLocale(std::string_view localeName);

// File bytes as UTF-8. A byte that the code page leaves undefined becomes the code point of the
// same number (0x81 becomes U+0081).
std::string TextOfBytes(std::string_view fileBytes);

// UTF-8 as file bytes. A character that the code page lacks becomes "?"; a byte that is not part of
// valid UTF-8 stays that byte.
std::string BytesOfText(std::string_view utf8);

// The characters of `utf8` that the code page lacks, each once, in the order of the text; empty
// when it has all.
std::string CharactersLacking(std::string_view utf8);

} // namespace runtime
