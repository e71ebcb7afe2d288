// lyrics/timedlyrics.h - lyrics with time marks: one text in which "[minutes:seconds]" is the time
// when the line after it is sung. Texts are of either kind; each file byte is a character. No
// state.
#pragma once

#include "metadata/records.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace lyrics
{

// What to highlight in the text without marks when the song has played for `Time` seconds.
struct LyricsData {
    std::int32_t Time = 0;   // whole seconds from the start of the song
    std::int16_t Start = 0;  // zero-based character position
    std::int16_t Length = 0; // characters; negative for a last line without a line break

    bool operator==(const LyricsData &) const = default;
};

// Entries by TimesKey, in no order.
using TimesByKey = std::unordered_map<std::string, LyricsData>;

// The key of a whole second: its decimal digits and "l" ("83l").
std::string TimesKey(std::int32_t seconds);

// Takes the marks out of `text`, which is of that kind, and adds one entry to `times` for each. A
// mark is what is between the first "[" and the first "]": a number before its first colon
// (minutes) and one after it (seconds); the time is rounded, a half to the even number. A pair with
// a colon and without two numbers stays in the text. A pair without a colon ends the parsing, and
// the rest of the text stays as it is, marks included. `Length` is the number of characters from
// the last "]" of the line to its carriage return. Each "{(" of the text becomes "[" and each ")}"
// becomes "]" at the end: during the parsing these two replace brackets that belong to no mark, and
// count as two characters in `Start`. The work is proportional to the length of the text. Errors:
// kDuplicateKey for a second that `times` already has (its mark is out of the text by then),
// kInvalidCall for a "]" before its "[", kOverflow for a time that does not fit 32 bits, or a start
// or length that does not fit 16. `text` and `times` are then as they were at that mark, with "{("
// and ")}".
void ParseMarks(metadata::TextKind kind, std::string &text, TimesByKey &times);

} // namespace lyrics
