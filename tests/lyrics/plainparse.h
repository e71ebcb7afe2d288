// tests/lyrics/plainparse.h - follows the rules of the time marks one by one on the whole text,
// slowly: the results of ParseMarks are compared with this.
#pragma once

#include "lyrics/timedlyrics.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <string>

namespace tests
{

inline void PlainStep(std::string &text, long long open, long long close, double seconds,
                      lyrics::TimesByKey &times)
{
    const std::int32_t time = runtime::RoundToInt32(seconds);
    long long p = open;
    const auto size = static_cast<long long>(text.size());
    for (long long at = open; at <= size && runtime::Mid(text, at, 1) != "\r"; ++at)
        if (runtime::Mid(text, at, 1) == "]")
            p = at;
    const long long lineEnd = runtime::InStr(p, text, "\r");
    lyrics::LyricsData entry;
    entry.Time = time;
    entry.Length = runtime::RoundToInt16(static_cast<double>(lineEnd - p - 1));
    entry.Start = runtime::RoundToInt16(static_cast<double>(open - 1));
    text = std::string(runtime::Left(text, open - 1)) + std::string(runtime::Mid(text, close + 1));
    if (times.count(lyrics::TimesKey(time)) != 0)
        throw runtime::RuntimeError(runtime::kDuplicateKey);
    times[lyrics::TimesKey(time)] = entry;
}

inline void PlainParse(std::string &text, lyrics::TimesByKey &times)
{
    for (;;) {
        const long long open = runtime::InStr(1, text, "[");
        const long long close = runtime::InStr(1, text, "]");
        if (open == 0 || close == 0)
            break;
        const std::string m(runtime::Mid(text, open + 1, close - open - 1));
        const auto colon = m.find(':');
        if (colon == std::string::npos)
            break;
        const auto a = runtime::ParseNumber(m.substr(0, colon));
        const auto b = runtime::ParseNumber(m.substr(colon + 1));
        if (a && b) {
            PlainStep(text, open, close, *a * 60 + *b, times);
        } else {
            text = runtime::ReplaceFirst(text, "[", "{(");
            text = runtime::ReplaceFirst(text, "]", ")}");
        }
    }
    text = runtime::Replace(runtime::Replace(text, "{(", "["), ")}", "]");
}

// The result of one parsing: the text, the entries, the number of the error or 0.
struct Parsed {
    std::string text;
    lyrics::TimesByKey times;
    int error = 0;

    bool operator==(const Parsed &) const = default;
};

// ParseMarks of a text of file bytes.
inline void ParseMarks(std::string &text, lyrics::TimesByKey &times)
{
    lyrics::ParseMarks(metadata::TextKind::FileBytes, text, times);
}

template <class Procedure>
Parsed ParsedBy(const Procedure &procedure, std::string text)
{
    Parsed parsed;
    parsed.text = std::move(text);
    try {
        procedure(parsed.text, parsed.times);
    } catch (const runtime::RuntimeError &failure) {
        parsed.error = failure.number;
    }
    return parsed;
}

} // namespace tests
