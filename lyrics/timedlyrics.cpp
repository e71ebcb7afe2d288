#include "lyrics/timedlyrics.h"

#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace lyrics
{

namespace
{

constexpr auto kNone = std::string_view::npos;

// One pass over a text. The rule is: take the first "[" and the first "]" of what remains, again
// and again. So the n-th "[" belongs to the n-th "]", and both searches only move forward. Offsets
// into `source` are zero-based. Positions are one-based and count in the text as it is at that
// step: `clean`, then the rest of `source` from `open` on.
class Pass
{
public:
    Pass(std::string_view text, TimesByKey &times, metadata::TextKind kind)
        : m_source(text), m_times(times), m_open(text.find('[')), m_close(text.find(']'))
    {
        m_clean.reserve(text.size());
        if (kind == metadata::TextKind::Utf8)
            CountAll();
    }

    void Run()
    {
        while (m_open != kNone && m_close != kNone && Step()) {
        }
    }

    // The text as it is now; brackets that belong to no mark have been replaced ("{(" and ")}").
    std::string Text()
    {
        Emit(m_source.size());
        return m_clean;
    }

private:
    // Counts once for all positions, so that no part is counted twice.
    void CountAll()
    {
        m_characters.reserve(m_source.size() + 1);
        std::uint32_t count = 0;
        m_characters.push_back(count);
        for (const char c : m_source)
            m_characters.push_back(count += runtime::ContinuesCharacter(c) ? 0U : 1U);
    }

    // The number of characters of the source between two offsets.
    std::size_t Characters(std::size_t from, std::size_t end) const
    {
        return m_characters.empty() ? end - from : m_characters[end] - m_characters[from];
    }

    // Handles one pair of brackets. Returns: false when the parsing ends here.
    bool Step()
    {
        if (m_close < m_open)
            throw runtime::RuntimeError(runtime::kInvalidCall);
        if (m_colon <= m_open)
            m_colon = Find(':', m_open);
        if (m_colon > m_close)
            return false;
        const std::size_t nextOpen = m_source.find('[', m_open + 1);
        // A "[" between them makes the number invalid.
        const auto seconds = nextOpen < m_close ? std::nullopt : SecondsOfMark();
        Emit(m_open);
        if (seconds)
            TakeMark(*seconds);
        else
            KeepBrackets();
        m_open = nextOpen;
        return true;
    }

    // The time between the brackets, in seconds, not rounded. Nothing when it is not a time.
    std::optional<double> SecondsOfMark() const
    {
        const auto number = [this](std::size_t from, std::size_t end) {
            return runtime::ParseNumber(m_source.substr(from, end - from));
        };
        const auto minutes = number(m_open + 1, m_colon);
        const auto seconds = number(m_colon + 1, m_close);
        return minutes && seconds ? std::optional(*minutes * 60 + *seconds) : std::nullopt;
    }

    void KeepBrackets()
    {
        AddClean("{(");
        m_done = m_open + 1;
        NextClose();
    }

    void TakeMark(double seconds)
    {
        LyricsData entry;
        entry.Time = runtime::RoundToInt32(seconds);
        if (m_line <= m_open)
            FindLine();
        const auto position = [this](std::size_t offset) {
            return static_cast<double>(m_cleanCharacters + 1 + Characters(m_open, offset));
        };
        const double lineEnd = m_line == m_source.size() ? 0 : position(m_line);
        entry.Length = runtime::RoundToInt16(lineEnd - position(m_lastClose) - 1);
        entry.Start = runtime::RoundToInt16(position(m_open) - 1);
        m_done = m_close + 1;
        NextClose();
        if (!m_times.try_emplace(TimesKey(entry.Time), entry).second)
            throw runtime::RuntimeError(runtime::kDuplicateKey);
    }

    void NextClose()
    {
        m_paired = m_close + 1;
        m_close = m_source.find(']', m_paired);
    }

    // Finds the end of the line with the pair, and the last "]" before it.
    void FindLine()
    {
        m_line = Find('\r', m_open);
        m_lastClose = m_source.rfind(']', m_line);
    }

    // Moves the text before `end` to `m_clean`. A "]" that was paired and is still there belongs to
    // no mark.
    void Emit(std::size_t end)
    {
        while (m_done < end) {
            if (m_kept == kNone || m_kept < m_done)
                m_kept = Find(']', m_done);
            const bool isKept = m_kept < end && m_kept < m_paired;
            const std::size_t stop = isKept ? m_kept : end;
            m_clean += m_source.substr(m_done, stop - m_done);
            m_cleanCharacters += Characters(m_done, stop);
            m_done = stop;
            if (isKept) {
                AddClean(")}");
                ++m_done;
            }
        }
    }

    void AddClean(std::string_view ascii)
    {
        m_clean += ascii;
        m_cleanCharacters += ascii.size();
    }

    // The first `c` from `from` on, or the end of the text.
    std::size_t Find(char c, std::size_t from) const
    {
        return std::min(m_source.find(c, from), m_source.size());
    }

    std::string_view m_source;
    TimesByKey &m_times;
    std::vector<std::uint32_t> m_characters; // before each offset; empty where each byte is one
    std::string m_clean;
    std::size_t m_cleanCharacters = 0;
    std::size_t m_open, m_close; // the pair that is being parsed; kNone when there is none
    std::size_t m_done = 0;      // the text before it is in `m_clean`, or was removed
    std::size_t m_paired = 0;    // each "]" before it has its "["
    // Found once, and valid as long as they are ahead, so that no part is searched twice.
    std::size_t m_colon = 0;     // the first ":" after the "["
    std::size_t m_line = 0;      // the carriage return of the line
    std::size_t m_lastClose = 0; // the last "]" before m_line
    std::size_t m_kept = kNone;  // the first "]" at or after `m_done`
};

} // namespace

std::string TimesKey(std::int32_t seconds)
{
    return std::to_string(seconds) + "l";
}

void ParseMarks(metadata::TextKind kind, std::string &text, TimesByKey &times)
{
    const std::string source = text;
    Pass pass(source, times, kind);
    try {
        pass.Run();
    } catch (const runtime::RuntimeError &) {
        text = pass.Text();
        throw;
    }
    text = runtime::Replace(runtime::Replace(pass.Text(), "{(", "["), ")}", "]");
}

} // namespace lyrics
