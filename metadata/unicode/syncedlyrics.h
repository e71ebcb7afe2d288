// metadata/unicode/syncedlyrics.h - lyrics that a tag stores with the time of each line or
// syllable, as lines with time marks. No state. Source: "ID3 tag version 2.4.0 - Native Frames",
// section 4.9.
#pragma once

#include <string>
#include <string_view>

namespace metadata::unicode
{

// The lines of a SYLT frame's content, as UTF-8: a mark "[mm:ss]" in front of each line, CR LF
// between lines. A text that begins with a line end begins a line; where none does, each text is a
// line. The mark is the whole second of a line's first text; of two lines in one second the second
// one gets no mark, as a time can be set once only. Times that count audio frames are turned into
// seconds with `mpegFrameMs`; where that is 0 the lines have no marks. Empty for a content without
// text, or of another type than lyrics or a transcription of the text.
[[nodiscard]] std::string LinesOfSyncedLyrics(std::string_view content, double mpegFrameMs);

} // namespace metadata::unicode
