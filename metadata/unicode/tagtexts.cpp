#include "metadata/unicode/tagtexts.h"

#include "metadata/genres.h"
#include "metadata/unicode/syncedlyrics.h"
#include "metadata/unicode/textvalues.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace metadata::unicode
{

std::string Joined(const std::vector<std::string> &values)
{
    std::string text;
    for (const auto &value : values) {
        if (!text.empty())
            text += "; ";
        text += value;
    }
    return text;
}

namespace
{

constexpr std::size_t kLanguageBytes = 3;
constexpr int kMaxGenreNumber = 255;
constexpr std::size_t kMostTextBytes = kMaxUnpackedBytes;

// The content of a frame that begins with an encoding; empty when it cannot be read. A view into
// the tag or into `buffer`.
std::string_view TextContent(const Frame &frame, std::string &buffer)
{
    if (frame.data.size() > kMostTextBytes)
        return {};
    return ViewContent(frame, buffer).value_or(std::string_view());
}

Encoding EncodingOfContent(std::string_view content)
{
    return EncodingOf(static_cast<unsigned char>(content.front()));
}

// All values of a text frame; empty for one without any.
std::string TextOf(const Frame &frame)
{
    std::string buffer;
    const std::string_view content = TextContent(frame, buffer);
    if (content.empty())
        return {};
    return DecodeJoined(EncodingOfContent(content), content.substr(1));
}

// The whole number at the beginning of `text`; no value without one or above `max`.
std::optional<int> LeadingInteger(std::string_view text, int max)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || value < 0 || value > max)
        return std::nullopt;
    return value;
}

bool IsYear(std::string_view text)
{
    return text.size() == 4 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<std::int16_t> TrackIn(const std::string &text)
{
    const auto number =
        LeadingInteger(runtime::Trim(text), std::numeric_limits<std::int16_t>::max());
    if (!number || *number == 0)
        return std::nullopt;
    return static_cast<std::int16_t>(*number);
}

constexpr int kNoRank = 100;

// The frame of a name that is the best one so far, and its text.
struct Choice {
    const Frame *frame = nullptr; // valid as long as its list
    int rank = kNoRank;           // the lower the better
    std::string text;
};

int RankOf(std::string_view language, bool isDescribed, const ReadingOptions &options)
{
    std::string lower(language);
    for (char &c : lower)
        if (c >= 'A' && c <= 'Z')
            c += 'a' - 'A';
    const int rank = isDescribed ? 4 : 0;
    if (lower == options.language)
        return rank;
    return rank + (lower == "eng" ? 1 : 2);
}

// Whether a program keeps the comment for itself, such as "iTunNORM".
bool IsForProgram(std::string_view description)
{
    return description.starts_with("iTun");
}

// Makes a COMM or USLT frame the best one, if it has a text and a lower rank.
void Offer(const Frame &frame, const ReadingOptions &options, Choice &best)
{
    std::string buffer;
    const std::string_view content = TextContent(frame, buffer);
    if (content.size() < 1 + kLanguageBytes)
        return;
    const Encoding encoding = EncodingOfContent(content);
    const auto [description, rest] = CutAtTerminator(encoding, content.substr(1 + kLanguageBytes));
    const std::string described = DecodeText(encoding, description);
    if (IsForProgram(described))
        return;
    const int rank = RankOf(content.substr(1, kLanguageBytes), !described.empty(), options);
    if (rank >= best.rank)
        return;
    if (std::string text = DecodeJoined(encoding, rest, description); !text.empty())
        best = {&frame, rank, std::move(text)};
}

// The lyrics with times of a SYLT frame; empty when it has none.
std::string SyncedText(const Frame &frame, const ReadingOptions &options)
{
    std::string buffer;
    return LinesOfSyncedLyrics(TextContent(frame, buffer), options.mpegFrameMs);
}

// One piece of a TCON text: what is in brackets, or what is after them.
std::string GenrePiece(std::string_view text)
{
    if (text == "RX")
        return "Remix";
    if (text == "CR")
        return "Cover";
    return std::string(text);
}

// Splits "(51)(39)Text" into its pieces. A text after a number refines it, so that number is
// dropped.
void AddGenrePieces(std::string_view value, std::vector<std::string> &pieces)
{
    while (value.starts_with('(') && !value.starts_with("((") && pieces.size() < kMostValues) {
        const auto close = value.find(')');
        if (close == std::string_view::npos)
            break;
        pieces.push_back(GenrePiece(value.substr(1, close - 1)));
        value.remove_prefix(close + 1);
        if (!value.empty() && (!value.starts_with('(') || value.starts_with("((")))
            pieces.pop_back();
    }
    if (value.starts_with("(("))
        value.remove_prefix(1);
    if (!value.empty())
        pieces.push_back(GenrePiece(value));
}

bool IsGenreNumber(std::string_view text)
{
    return !text.empty() && text.size() <= 3 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }) &&
           LeadingInteger(text, kMaxGenreNumber).has_value();
}

std::string NameOrNumber(const std::string &piece)
{
    if (!IsGenreNumber(piece))
        return piece;
    const auto number =
        static_cast<std::size_t>(LeadingInteger(piece, kMaxGenreNumber).value_or(0));
    return number < kGenreNames.size() ? std::string(kGenreNames[number]) : piece;
}

} // namespace

std::string GenreOf(const std::vector<std::string> &values)
{
    std::vector<std::string> pieces;
    for (const auto &value : values)
        AddGenrePieces(value, pieces);
    if (pieces.size() == 1 && IsGenreNumber(pieces.front()))
        return std::to_string(LeadingInteger(pieces.front(), kMaxGenreNumber).value_or(0));
    std::transform(pieces.begin(), pieces.end(), pieces.begin(), NameOrNumber);
    return Joined(pieces);
}

std::vector<std::string> ValuesOf(const Frame &frame)
{
    std::string buffer;
    const std::string_view content = TextContent(frame, buffer);
    if (content.empty())
        return {};
    return DecodeValues(EncodingOfContent(content), content.substr(1));
}

namespace
{

// An identifier of four characters as a number.
constexpr std::uint32_t Name(std::string_view id)
{
    std::uint32_t name = 0;
    for (const char c : id)
        name = name << 8U | static_cast<unsigned char>(c);
    return name;
}

// Collects the fields of a tag, except comment and lyrics, from frame to frame.
class FieldFinder
{
public:
    void Take(const Frame &frame, std::uint32_t name)
    {
        switch (name) {
        case Name("TIT2"):
            return TakeFirst(frame, m_texts.title);
        case Name("TPE1"):
            return TakeFirst(frame, m_texts.artist);
        case Name("TALB"):
            return TakeFirst(frame, m_texts.album);
        case Name("TDRC"):
            return TakeFirst(frame, m_years[0]);
        case Name("TYER"):
            return TakeFirst(frame, m_years[1]);
        case Name("TDRL"):
            return TakeFirst(frame, m_years[2]);
        case Name("TRCK"):
            return TakeFirst(frame, m_track);
        case Name("TCON"):
            if (m_genres.empty())
                m_genres = ValuesOf(frame);
            return;
        default:
            return;
        }
    }

    TagTexts Texts()
    {
        SetYear();
        if (m_track)
            m_texts.track = TrackIn(*m_track);
        if (std::string genre = GenreOf(m_genres); !genre.empty())
            m_texts.genre = std::move(genre);
        return std::move(m_texts);
    }

private:
    static void TakeFirst(const Frame &frame, std::optional<std::string> &text)
    {
        if (text)
            return;
        if (std::string found = TextOf(frame); !found.empty())
            text = std::move(found);
    }

    void SetYear()
    {
        for (const auto &text : m_years) {
            if (text && IsYear(std::string_view(*text).substr(0, 4))) {
                m_texts.year = text->substr(0, 4);
                return;
            }
        }
        for (auto &text : m_years)
            if (!m_texts.year)
                m_texts.year = std::move(text);
    }

    TagTexts m_texts;
    std::array<std::optional<std::string>, 3> m_years; // in the order in which they count
    std::optional<std::string> m_track;
    std::vector<std::string> m_genres;
};

// Takes from `more` each field that `texts` has no value for.
void FillMissing(TagTexts &texts, TagTexts more)
{
    const auto fill = [](auto &field, auto &other) {
        if (!field)
            field = std::move(other);
    };
    fill(texts.title, more.title);
    fill(texts.artist, more.artist);
    fill(texts.album, more.album);
    fill(texts.year, more.year);
    fill(texts.genre, more.genre);
    fill(texts.track, more.track);
}

// The texts of all tags of a file, in the order in which WalkTags finds them. The fields of an
// update replace those of the tags before it.
class TagsReader
{
public:
    explicit TagsReader(const ReadingOptions &options) : m_options(options) {}

    void Take(const FrameList &list)
    {
        FieldFinder fields;
        Choice comment, lyrics;
        std::string synced;
        for (const Frame &frame : list.frames) {
            const std::uint32_t name = frame.id.size() == 4 ? Name(frame.id) : 0;
            if (name == Name("COMM"))
                Offer(frame, m_options, comment);
            else if (name == Name("USLT"))
                Offer(frame, m_options, lyrics);
            else if (name == Name("SYLT") && synced.empty())
                synced = SyncedText(frame, m_options);
            else
                fields.Take(frame, name);
        }
        TagTexts found = fields.Texts();
        if (list.isUpdate)
            std::swap(found, m_texts);
        FillMissing(m_texts, std::move(found));
        TakeBetter(list, m_comment, std::move(comment));
        TakeBetter(list, m_lyrics, std::move(lyrics));
        if (m_synced.empty() || (list.isUpdate && !synced.empty()))
            m_synced = std::move(synced);
    }

    TagTexts Texts()
    {
        if (!m_comment.text.empty())
            m_texts.comment = std::move(m_comment.text);
        std::string &lyrics = m_lyrics.text.empty() ? m_synced : m_lyrics.text;
        if (!lyrics.empty())
            m_texts.lyrics = std::move(lyrics);
        return std::move(m_texts);
    }

private:
    static void TakeBetter(const FrameList &list, Choice &best, Choice found)
    {
        if (found.rank < best.rank || (list.isUpdate && found.rank == best.rank))
            best = std::move(found);
    }

    const ReadingOptions &m_options;
    TagTexts m_texts;
    Choice m_comment, m_lyrics; // their frames may not exist any more
    std::string m_synced;
};

} // namespace

bool NeedsFrames(const TagHeader &header, std::string_view tag)
{
    static constexpr std::string_view kFields[] = {"TIT2", "TPE1", "TALB", "TYER", "TDRC",
                                                   "TCON", "TRCK", "COMM", "USLT"};
    const auto needs = [&header](const Frame &frame) {
        if (std::find(std::begin(kFields), std::end(kFields), frame.id) == std::end(kFields) ||
            frame.data.size() < 2)
            return false;
        if (header.majorVersion != 3 || frame.formatFlags != 0 || frame.data.front() != 0)
            return true;
        const std::string_view text = frame.data.substr(1);
        return !runtime::IsAscii(text) && runtime::IsUtf8(text);
    };
    const FrameList list = ReadFrames(header, tag);
    return std::any_of(list.frames.begin(), list.frames.end(), needs);
}

std::string GenreInWords(const std::string &genre)
{
    return NameOrNumber(genre);
}

const Frame *ChosenFrame(const std::vector<const FrameList *> &lists, std::string_view id,
                         const ReadingOptions &options)
{
    Choice best;
    for (const FrameList *list : lists)
        for (const Frame &frame : list->frames)
            if (frame.id == id)
                Offer(frame, options, best);
    return best.frame;
}

std::optional<TagTexts> ReadTagTexts(FileBytesPort &file, const ReadingOptions &options)
{
    TagsReader reader(options);
    bool hasTag = false;
    WalkTags(file, [&](const TagPlace &place, std::string_view, const FrameList &list) {
        if (place.header.bodyBytes == 0)
            return;
        hasTag = true;
        reader.Take(list);
    });
    return hasTag ? std::optional(reader.Texts()) : std::nullopt;
}

} // namespace metadata::unicode
