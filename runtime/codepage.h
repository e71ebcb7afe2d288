// runtime/codepage.h - the border between file bytes (one character per byte, as tags and lyrics
// are in a file) and text (UTF-8). Every byte 0-255 is the same after the conversion to text and
// back.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// U+FEFF in UTF-8. Some editors write it at the start of a file; it is not part of the text.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The code page in use: 1250 to 1258 or 874. 1252 until UseCodePage is called.
int CodePage();

// Makes `codePage` the one in use; 1252 when there is no table for the number.
void UseCodePage(int codePage);

// The single-byte code page for the name of a POSIX locale, such as "cs_CZ.UTF-8"; 1252 for a
// language that is not in the table. Source: the default ANSI code page of each language.
int CodePageOfLocale(std::string_view localeName);

// File bytes as UTF-8. A byte that the code page leaves undefined becomes the code point of the
// same number (0x81 becomes U+0081).
std::string TextOfBytes(std::string_view fileBytes);

// UTF-8 as file bytes. A character that the code page lacks becomes "?"; a byte that is not part of
// valid UTF-8 is kept.
std::string BytesOfText(std::string_view utf8);

// The characters of `utf8` that the code page lacks, each once, in the order of the text; empty
// when it lacks none.
std::string CharactersLacking(std::string_view utf8);

} // namespace runtime
