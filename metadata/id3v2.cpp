#include "metadata/id3v2.h"

#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace metadata
{

namespace
{

constexpr int kFlagsOffset = 9;         // the second flag byte of a version 3 frame
constexpr int kUnreadableBits = 0xC0;   // compression, encryption
constexpr int kLanguageLength = 3;      // in front of the description of COMM and USLT
constexpr int kDescriptionOverhead = 4; // the language and the NUL of an empty description

struct Identifiers {
    std::string_view title, artist, album, year, genre, track, comment, lyrics;
};

constexpr Identifiers kVersion2 = {"TT2", "TOA", "TAL", "TYE", "TCO", "TRK", "COM", ""};
constexpr Identifiers kVersion3 = {"TIT2", "TPE1", "TALB", "TYER", "TCON", "TRCK", "COMM", "USLT"};

// runtime::Mid, with nothing instead of the error for a negative count.
std::optional<std::string_view> Extract(std::string_view body, long long start, long long count)
{
    if (count < 0)
        return std::nullopt;
    return runtime::Mid(body, start, count);
}

// The first four bytes in one number, for a comparison.
std::uint32_t WordOf(std::string_view bytes)
{
    std::uint32_t word = 0;
    for (const char byte : bytes.substr(0, 4))
        word = word << 8 | static_cast<unsigned char>(byte);
    return word;
}

// One walk over the body. When a step fails, its target is unchanged and the next step runs. All
// fields share `m_length`: when a size cannot be read, the length of the previous field is used.
class Reader
{
public:
    Reader(std::string_view body, int majorVersion)
        : m_body(body), m_version(majorVersion), m_geometry(GeometryOf(majorVersion)),
          m_identifiers(majorVersion == 2 ? kVersion2 : kVersion3)
    {
    }

    FrameFindings Read()
    {
        FindTextFrames();
        FrameFindings findings;
        findings.title = TextField(m_identifiers.title);
        findings.album = TextField(m_identifiers.album);
        findings.artist = TextField(m_identifiers.artist);
        findings.year = TextField(m_identifiers.year);
        findings.genre = Genre();
        findings.track = Track();
        findings.comment = Comment();
        findings.lyrics = Lyrics();
        return findings;
    }

private:
    // Returns: false when the size cannot be read; the length is unchanged then.
    bool ReadLength(long long position)
    {
        const auto size =
            FindNumber(runtime::Mid(m_body, position + m_geometry.sizeOffset, 4), 256);
        if (size)
            m_length = static_cast<long long>(*size) - 1; // less the encoding byte
        return size.has_value();
    }

    // The first place of each identifier that begins with a T, in one walk over the body.
    void FindTextFrames()
    {
        const std::size_t length = m_identifiers.title.size();
        std::array<std::uint32_t, kTextFrames> words{};
        for (std::size_t i = 0; i < kTextFrames; ++i)
            words[i] = WordOf(m_textFrames[i].identifier);
        std::size_t missing = kTextFrames;
        for (auto at = m_body.find('T'); at != std::string_view::npos && missing > 0;
             at = m_body.find('T', at + 1)) {
            const auto found = std::ranges::find(words, WordOf(m_body.substr(at, length)));
            if (found == words.end())
                continue;
            m_textFrames[static_cast<std::size_t>(found - words.begin())].position =
                static_cast<long long>(at) + 1;
            *found = 0; // matches no identifier: only the first place of each is used
            --missing;
        }
    }

    long long PositionOf(std::string_view identifier) const
    {
        const auto found = std::ranges::find(m_textFrames, identifier, &TextFrame::identifier);
        return found != m_textFrames.end() ? found->position
                                           : FindIdentifier(1, m_body, identifier);
    }

    // The position of the first frame of that name, after reading its length; 0 when there is none
    // or when it is unreadable.
    long long OpenFrame(std::string_view identifier)
    {
        const auto position = PositionOf(identifier);
        if (position == 0)
            return 0;
        ReadLength(position);
        return IsFrameUnreadable(position, m_body, m_version) ? 0 : position;
    }

    std::optional<std::string_view> TextField(std::string_view identifier)
    {
        const auto position = OpenFrame(identifier);
        if (position == 0)
            return std::nullopt;
        return Extract(m_body, position + m_geometry.textOffset, m_length);
    }

    std::optional<std::string> Genre()
    {
        const auto position = OpenFrame(m_identifiers.genre);
        if (position == 0)
            return std::nullopt;
        // If this fails, the text is empty, and an empty text is not a genre.
        const auto text = Extract(m_body, position + m_geometry.textOffset, m_length)
                              .value_or(std::string_view());
        if (text.empty())
            return "255";
        const bool bracket = text.front() == '(';
        const double number = runtime::LeadingNumber(bracket ? text.substr(1) : text);
        if (!std::isfinite(number))
            return std::nullopt; // an overflow: the field keeps its value
        if (bracket)
            return runtime::NumberText(number);
        if (number != 0)
            return std::string(text);
        const std::string first = runtime::UpperAscii(text.substr(0, 1));
        return first >= "A" && first <= "Z" ? std::string(text) : "0";
    }

    std::optional<std::int16_t> Track()
    {
        const auto number = runtime::ParseNumber(TextField(m_identifiers.track).value_or(""));
        if (!number)
            return std::nullopt;
        const double rounded = std::nearbyint(*number);
        using Limits = std::numeric_limits<std::int16_t>;
        if (!(rounded >= Limits::min() && rounded <= Limits::max()))
            return std::nullopt;
        return static_cast<std::int16_t>(rounded);
    }

    // The first frame alone decides whether there is a comment at all: its size must be readable,
    // and it must be neither compressed nor encrypted. The text comes from the first frame with an
    // empty description.
    std::optional<std::string_view> Comment()
    {
        auto position = FindIdentifier(1, m_body, m_identifiers.comment);
        if (position == 0 || !ReadLength(position) ||
            IsFrameUnreadable(position, m_body, m_version))
            return std::nullopt;
        while (position != 0 && !HasEmptyDescription(position))
            position = FindIdentifier(position + 1, m_body, m_identifiers.comment);
        if (position == 0)
            return std::nullopt;
        ReadLength(position);
        return DescribedText(position);
    }

    std::optional<std::string_view> Lyrics()
    {
        const auto position = OpenFrame(m_identifiers.lyrics);
        return position == 0 ? std::nullopt : DescribedText(position);
    }

    bool HasEmptyDescription(long long position) const
    {
        return runtime::Mid(m_body, position + m_geometry.textOffset + kLanguageLength, 1) ==
               std::string_view("\0", 1);
    }

    // The text after a language and a description that is empty.
    std::optional<std::string_view> DescribedText(long long position) const
    {
        return Extract(m_body, position + m_geometry.textOffset + kDescriptionOverhead,
                       m_length - kDescriptionOverhead);
    }

    std::string_view m_body;
    int m_version;
    FrameGeometry m_geometry;
    const Identifiers &m_identifiers;
    struct TextFrame {
        std::string_view identifier;
        long long position = 0; // one-based; 0 = there is none
    };
    static constexpr std::size_t kTextFrames = 6;
    std::array<TextFrame, kTextFrames> m_textFrames = {{{m_identifiers.title},
                                                        {m_identifiers.artist},
                                                        {m_identifiers.album},
                                                        {m_identifiers.year},
                                                        {m_identifiers.genre},
                                                        {m_identifiers.track}}};
    long long m_length = 0; // of the text, as the last readable size said
};

void Set(std::string &field, const std::optional<std::string_view> &text)
{
    if (text)
        field.assign(*text);
}

} // namespace

std::optional<std::int64_t> FindBodyBytes(std::string_view start)
{
    constexpr std::size_t kSizeOffset = 6;
    if (!start.starts_with("ID3") || start.size() < static_cast<std::size_t>(kTagHeaderBytes))
        return std::nullopt;
    return FindNumber(start.substr(kSizeOffset), 128).value_or(0);
}

FrameGeometry GeometryOf(int majorVersion)
{
    if (majorVersion == 2)
        return {5, 7};
    if (majorVersion == 3)
        return {4, 11};
    return {};
}

std::optional<std::int32_t> FindNumber(std::string_view text, int base)
{
    if (text.size() < 4)
        return std::nullopt;
    std::int64_t value = 0;
    for (const char character : text.substr(0, 4))
        value = value * base + static_cast<unsigned char>(character);
    if (value > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

std::int32_t BytesToNumber(std::string_view text, int base)
{
    if (text.size() < 4)
        throw runtime::RuntimeError(runtime::kInvalidCall);
    const auto value = FindNumber(text, base);
    if (!value)
        throw runtime::RuntimeError(runtime::kOverflow);
    return *value;
}

// The library's search for one letter compares many bytes at a time, and random picture data seldom
// contains the letter; a general search for a text is ten times slower on it.
long long FindIdentifier(long long start, std::string_view body, std::string_view identifier)
{
    const auto offset = static_cast<std::size_t>(start - 1);
    if (offset >= body.size())
        return 0;
    const auto at = body.find(identifier, offset);
    return at == std::string_view::npos ? 0 : static_cast<long long>(at) + 1;
}

bool IsFrameUnreadable(long long position, std::string_view body, int majorVersion)
{
    if (majorVersion != 3)
        return false;
    const auto flags = runtime::Mid(body, position + kFlagsOffset, 1);
    return !flags.empty() && (static_cast<unsigned char>(flags.front()) & kUnreadableBits) != 0;
}

FrameFindings FindFrames(std::string_view body, int majorVersion)
{
    if (majorVersion != 2 && majorVersion != 3)
        return {};
    return Reader(body, majorVersion).Read();
}

void ReadID3v2Frames(std::string_view body, int majorVersion, ID3v2Tag &tag,
                     std::optional<FrameFindings> *known)
{
    std::optional<FrameFindings> found;
    std::optional<FrameFindings> &findings = known != nullptr ? *known : found;
    if (!findings)
        findings = FindFrames(body, majorVersion);
    Set(tag.Title, findings->title);
    Set(tag.Artist, findings->artist);
    Set(tag.Album, findings->album);
    Set(tag.Year, findings->year);
    Set(tag.Comment, findings->comment);
    Set(tag.Lyrics, findings->lyrics);
    if (findings->genre)
        tag.Genre = *findings->genre;
    if (findings->track)
        tag.Track = *findings->track;
}

} // namespace metadata
