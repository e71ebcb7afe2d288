#include "metadata/unicode/tagtexts.h"

#include "metadata/genres.h"
#include "metadata/unicode/syncedlyrics.h"
#include "metadata/unicode/textvalues.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <algorithm>
#include <charconv>
#include <limits>

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

std::vector<std::string> ValuesOf(const Frame &frame)
{
    const auto content = FrameContent(frame);
    if (!content || content->empty())
        return {};
    return DecodeValues(EncodingOf(static_cast<unsigned char>(content->front())),
                        std::string_view(*content).substr(1));
}

namespace
{

constexpr std::size_t kLanguageBytes = 3;
constexpr int kMaxGenreNumber = 255;

// The values of the first frame of that name that has any.
std::vector<std::string> ValuesNamed(const FrameList &list, std::string_view id)
{
    for (const auto &frame : list.frames) {
        if (frame.id != id)
            continue;
        if (auto values = ValuesOf(frame); !values.empty())
            return values;
    }
    return {};
}

std::optional<std::string> TextNamed(const FrameList &list, std::string_view id)
{
    const auto values = ValuesNamed(list, id);
    return values.empty() ? std::nullopt : std::optional(Joined(values));
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

std::optional<std::string> Year(const FrameList &list)
{
    std::optional<std::string> first;
    for (const std::string_view id : {"TDRC", "TYER", "TDRL"}) {
        const auto text = TextNamed(list, id);
        if (text && IsYear(std::string_view(*text).substr(0, 4)))
            return text->substr(0, 4);
        if (!first)
            first = text;
    }
    return first;
}

std::optional<std::int16_t> Track(const FrameList &list)
{
    const auto text = TextNamed(list, "TRCK");
    if (!text)
        return std::nullopt;
    const auto number =
        LeadingInteger(runtime::Trim(*text), std::numeric_limits<std::int16_t>::max());
    if (!number || *number == 0)
        return std::nullopt;
    return static_cast<std::int16_t>(*number);
}

// A text with a language and a description in front of it.
struct DescribedText {
    std::string language;
    std::string description;
    std::string text;
};

std::optional<DescribedText> ReadDescribed(const Frame &frame)
{
    const auto content = FrameContent(frame);
    if (!content || content->size() < 1 + kLanguageBytes)
        return std::nullopt;
    const Encoding encoding = EncodingOf(static_cast<unsigned char>(content->front()));
    const std::string_view behind = std::string_view(*content).substr(1 + kLanguageBytes);
    const auto [description, rest] = CutAtTerminator(encoding, behind);
    DescribedText result;
    result.language = runtime::LowerText(content->substr(1, kLanguageBytes));
    result.description = DecodeText(encoding, description);
    // The description may have a byte order mark and the text none, or the other way round.
    result.text = Joined(DecodeValues(encoding, rest));
    if (result.text.empty())
        return std::nullopt;
    return result;
}

// The lower the better.
int Rank(const DescribedText &text, const ReadingWishes &wishes)
{
    int rank = text.description.empty() ? 0 : 4;
    if (text.language != wishes.language)
        rank += text.language == "eng" ? 1 : 2;
    return rank;
}

// What some programs keep in comments for themselves, such as "iTunNORM".
bool IsForProgram(const DescribedText &text)
{
    return text.description.starts_with("iTun");
}

// The frame, and what it holds.
struct Choice {
    const Frame *frame = nullptr;
    DescribedText text;
};

Choice Choose(const FrameList &list, std::string_view id, const ReadingWishes &wishes)
{
    Choice best;
    for (const auto &frame : list.frames) {
        if (frame.id != id)
            continue;
        auto text = ReadDescribed(frame);
        if (!text || IsForProgram(*text))
            continue;
        if (best.frame == nullptr || Rank(*text, wishes) < Rank(best.text, wishes))
            best = {&frame, *std::move(text)};
    }
    return best;
}

std::optional<std::string> Described(const FrameList &list, std::string_view id,
                                     const ReadingWishes &wishes)
{
    Choice best = Choose(list, id, wishes);
    return best.frame != nullptr ? std::optional(std::move(best.text.text)) : std::nullopt;
}

std::optional<std::string> Lyrics(const FrameList &list, const ReadingWishes &wishes)
{
    if (auto text = Described(list, "USLT", wishes))
        return text;
    for (const auto &frame : list.frames) {
        if (frame.id != "SYLT")
            continue;
        const auto content = FrameContent(frame);
        std::string text = content ? LinesOfSyncedLyrics(*content, wishes.mpegFrameMs) : "";
        if (!text.empty())
            return text;
    }
    return std::nullopt;
}

// One piece of a TCON text: what is in brackets, or what is behind them.
std::string GenrePiece(std::string_view text)
{
    if (text == "RX")
        return "Remix";
    if (text == "CR")
        return "Cover";
    return std::string(text);
}

// "(51)(39)Text" in its pieces; the text behind a number refines it, so the number before it goes.
void AddGenrePieces(std::string_view value, std::vector<std::string> &pieces)
{
    while (value.starts_with('(') && !value.starts_with("((")) {
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

TagTexts FindTexts(const FrameList &list, const ReadingWishes &wishes)
{
    TagTexts texts;
    texts.title = TextNamed(list, "TIT2");
    texts.artist = TextNamed(list, "TPE1");
    texts.album = TextNamed(list, "TALB");
    texts.year = Year(list);
    if (std::string genre = GenreOf(ValuesNamed(list, "TCON")); !genre.empty())
        texts.genre = std::move(genre);
    texts.track = Track(list);
    texts.comment = Described(list, "COMM", wishes);
    texts.lyrics = Lyrics(list, wishes);
    return texts;
}

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

void FillMissing(TagTexts &texts, const TagTexts &more)
{
    const auto fill = [](auto &field, const auto &other) {
        if (!field)
            field = other;
    };
    fill(texts.title, more.title);
    fill(texts.artist, more.artist);
    fill(texts.album, more.album);
    fill(texts.year, more.year);
    fill(texts.comment, more.comment);
    fill(texts.lyrics, more.lyrics);
    fill(texts.genre, more.genre);
    fill(texts.track, more.track);
}

std::string GenreInWords(const std::string &genre)
{
    return NameOrNumber(genre);
}

const Frame *ChosenFrame(const FrameList &list, std::string_view id, const ReadingWishes &wishes)
{
    return Choose(list, id, wishes).frame;
}

std::optional<TagTexts> ReadTagTexts(FileBytesPort &file, const ReadingWishes &wishes)
{
    std::optional<TagTexts> texts;
    WalkTags(file, [&](const TagPlace &place, std::string_view, const FrameList &list) {
        if (place.header.bodyBytes == 0)
            return;
        TagTexts found = FindTexts(list, wishes);
        if (!texts)
            texts.emplace();
        if (list.isUpdate)
            std::swap(found, *texts);
        FillMissing(*texts, found);
    });
    return texts;
}

} // namespace metadata::unicode
