// runtime/text.h - the text operations that the rules of the program need. Positions are one-based.
// The operations on bytes work for file bytes and UTF-8 alike; UpperText, LowerText and EqualText
// need UTF-8. No state.
#pragma once

#include "runtime/utf8.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace runtime
{

// `count` bytes of `text` from position `start` on, fewer when the text ends before; a view into
// `text`.
// Errors: kInvalidCall when start < 1 or count < 0.
std::string_view Mid(std::string_view text, long long start, long long count);

// All of `text` from position `start` on. Errors: kInvalidCall when start < 1.
std::string_view Mid(std::string_view text, long long start);

// The first and the last `count` bytes, all when there are fewer; views into `text`. Errors:
// kInvalidCall when count < 0.
std::string_view Left(std::string_view text, long long count);
std::string_view Right(std::string_view text, long long count);

// The first position at or after `start` where `needle` is, compared byte by byte; 0 when there
// is none. An empty needle is found at `start` itself, unless that is after the text's end or
// the text is empty. Errors: kInvalidCall when start < 1.
long long InStr(long long start, std::string_view text, std::string_view needle);

// Cuts blanks (0x20 only, not NULs, tabs or line ends) at both ends; a view into `text`.
std::string_view Trim(std::string_view text);

// Cuts NUL characters at the end; a text of NULs alone gives the empty text.
std::string_view StripTrailingNulls(std::string_view text);

// `text` with each `from` replaced by `to`, in one pass from left to right; an empty `from` changes
// nothing. ReplaceFirst replaces only the first one.
std::string Replace(std::string_view text, std::string_view from, std::string_view to);
std::string ReplaceFirst(std::string_view text, std::string_view from, std::string_view to);

// `text` with each line end (CR LF, CR alone, LF alone) as CR LF.
std::string WithCrLf(std::string_view text);

// The parts of `text` between the `separator`s (which must not be empty). An empty text gives no
// part.
std::vector<std::string> Split(std::string_view text, std::string_view separator);

// Upper case; each character becomes one character, and a byte that is not part of valid UTF-8 is
// kept.
// Source: the simple case mapping of Unicode, from utf8proc ("ß" becomes "ẞ").
std::string UpperText(std::string_view utf8);

// The same, appended to `out`.
void AppendUpperText(std::string_view utf8, std::string &out);

// Lower case, by the same rules.
std::string LowerText(std::string_view utf8);

// Whether both are the same text without regard to letter case (UpperText of both is equal).
bool EqualText(std::string_view first, std::string_view second);

// Upper case of the ASCII letters only, for keywords, extensions and keys of files.
std::string UpperAscii(std::string_view text);
void AppendUpperAscii(std::string_view text, std::string &out);
constexpr char UpperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
bool EqualAscii(std::string_view first, std::string_view second);

} // namespace runtime
