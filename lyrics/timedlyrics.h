// lyrics/timedlyrics.h - lyrics with time marks: one text in which "[minutes:seconds]" says when
// the line behind it is sung. Texts are file bytes, one character per byte. No state.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace lyrics
{

// What to highlight in the text without marks when the song reaches one whole second.
struct LyricsData {
    std::int32_t Time = 0;   // whole seconds from the start of the song
    std::int16_t Start = 0;  // zero-based character position
    std::int16_t Length = 0; // characters; negative for a last line without a line break

    bool operator==(const LyricsData &) const = default;
};

// The marks of one text by TimesKey; no order.
using TimesByKey = std::unordered_map<std::string, LyricsData>;

// The key of a whole second: its decimal digits and "l" ("83l").
std::string TimesKey(std::int32_t seconds);

// Takes the marks out of `text` and adds one entry a mark to `times`. A mark is what stands between
// the first "[" and the first "]", with numbers on both sides of its first colon, in minutes and
// seconds; the sum is rounded half to even. What has a colon and no such numbers stays as it is;
// one without a colon ends the parsing, and what is left stays, marks included. `Length` counts
// from behind the last "]" of the mark's line to its carriage return. Every "{(" of the text comes
// out as "[" and every ")}" as "]": these two stand in for brackets that are no marks meanwhile,
// and count as two characters in `Start`. The work grows with the length of the text, not with
// marks times length. Errors: kDuplicateKey for a second that `times` has already (the mark is gone
// from the text by then), kInvalidCall for a "]" before its "[", kOverflow for a time beyond 32
// bits, a start or a length beyond 16. `text` and `times` are then as they were at that mark, "{("
// and ")}" included.
void ParseMarks(std::string &text, TimesByKey &times);

} // namespace lyrics
