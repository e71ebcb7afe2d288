#include "metadata/unicode/form23.h"

#include "metadata/unicode/encodetext.h"
#include "metadata/unicode/tagtexts.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace metadata::unicode
{

namespace
{

// The parts of a frame's content, in their order, one character each:
//   e the encoding   3 the language   1 one byte   8 a date   z a Latin-1 text with its terminator
//   t a text with its terminator      T texts up to the end   r any bytes up to the end
//   s texts with four bytes of time each up to the end
constexpr std::array<std::pair<std::string_view, std::string_view>, 11> kLayouts = {{
    {"TXXX", "etT"},
    {"WXXX", "etr"},
    {"COMM", "e3tT"},
    {"USLT", "e3tT"},
    {"APIC", "ez1tr"},
    {"GEOB", "ezttr"},
    {"USER", "e3T"},
    {"OWNE", "ez8T"},
    {"COMR", "ez8z1ttzr"},
    {"SYLT", "e311ts"},
    {"IPLS", "eT"},
}};

constexpr std::size_t kTimeBytes = 4;
constexpr std::size_t kMostPieces = 65536; // a content with more was made to exhaust the memory
constexpr int kDeepest = 3;                // chapters within chapters
constexpr unsigned kGrouped23 = 0x20, kCompressed23 = 0x80, kEncrypted23 = 0x40;

std::string_view LayoutOf(std::string_view id)
{
    for (const auto &[name, layout] : kLayouts)
        if (name == id)
            return layout;
    return id.starts_with('T') ? "eT" : std::string_view();
}

// A piece of a frame's content: bytes that are not changed, or a text.
struct Piece {
    std::string_view bytes;
    std::optional<std::string> text = {}; // in UTF-8
    bool terminated = false;
};

class ContentReader
{
public:
    ContentReader(std::string_view content, std::string_view layout)
        : m_encoding(EncodingOf(static_cast<unsigned char>(content.front()))),
          m_rest(content.substr(1))
    {
        for (const char part : layout.substr(1))
            Take(part);
    }

    std::vector<Piece> pieces;
    bool IsWhole() const { return m_rest.empty(); }

private:
    void Take(char part)
    {
        switch (part) {
        case 't':
            TakeText();
            break;
        case 'T':
            while (!m_rest.empty() && pieces.size() < kMostPieces)
                TakeText();
            break;
        case 's':
            while (!m_rest.empty() && pieces.size() < kMostPieces) {
                TakeText();
                TakeBytes(kTimeBytes);
            }
            break;
        case 'z': {
            const auto end = m_rest.find('\0');
            TakeBytes(end == std::string_view::npos ? m_rest.size() : end + 1);
            break;
        }
        case 'r':
            TakeBytes(m_rest.size());
            break;
        default: // a number of bytes
            TakeBytes(static_cast<std::size_t>(part - '0'));
        }
    }

    void TakeBytes(std::size_t count)
    {
        const std::string_view bytes = m_rest.substr(0, count);
        pieces.push_back({bytes});
        m_rest.remove_prefix(bytes.size());
    }

    void TakeText()
    {
        const auto [text, rest] = CutAtTerminator(m_encoding, m_rest);
        pieces.push_back({{}, DecodeText(m_encoding, text), text.size() < m_rest.size()});
        m_rest = rest;
    }

    Encoding m_encoding;
    std::string_view m_rest;
};

// `content` with its texts in an encoding of version 2.3.
// Returns: no value when it has too many pieces.
std::optional<std::string> InOldEncoding(std::string_view content, std::string_view layout)
{
    const ContentReader reader(content, layout);
    if (!reader.IsWhole())
        return std::nullopt;
    std::vector<std::string_view> texts;
    for (const Piece &piece : reader.pieces)
        if (piece.text)
            texts.emplace_back(*piece.text);
    const Encoding encoding = EncodingFor(texts);
    std::string result(1, static_cast<char>(encoding));
    for (const Piece &piece : reader.pieces) {
        if (piece.text)
            result += EncodeText(encoding, *piece.text);
        else
            result += piece.bytes;
        if (piece.terminated)
            result += Terminator(encoding);
    }
    return result;
}

std::string TextFrame(std::string_view id, const std::vector<std::string> &values)
{
    const std::vector<std::string_view> views(values.begin(), values.end());
    const Encoding encoding = EncodingFor(views);
    std::string data(1, static_cast<char>(encoding));
    for (std::size_t i = 0; i < values.size(); ++i)
        data.append(i == 0 ? std::string_view() : Terminator(encoding))
            .append(EncodeText(encoding, values[i]));
    return MakeFrame23(id, data);
}

bool IsDigits(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The two digits at that place of a time "yyyy-MM-ddTHH:mm"; empty when they are missing.
std::string Digits(std::string_view time, std::size_t at)
{
    const std::string_view two = time.size() >= at + 2 ? time.substr(at, 2) : std::string_view();
    return IsDigits(two) ? std::string(two) : std::string();
}

unsigned FlagsFrom24(unsigned status)
{
    return (status & 0x70U) << 1U; // the same three bits, one place higher
}

// The identifier of a frame of version 2.4. An identifier of three letters that 2.3 does not have
// keeps its fourth character.
std::string_view NameIn23(const Frame &frame)
{
    return frame.id.size() == 4 ? frame.id : frame.whole.substr(0, 4);
}

// A frame of version 2.4 whose data is not changed, except for the order of the bytes before it
// (group, encryption method, length).
// Returns: no value when the frame ends within those bytes.
std::optional<std::string> Repacked(const Frame &frame)
{
    const FrameExtras extras = ExtrasOf(frame);
    if (extras.bytes > frame.data.size())
        return std::nullopt;
    std::string_view front = frame.data.substr(0, extras.bytes);
    std::string group, method, length;
    unsigned format = 0;
    const auto take = [&front](std::size_t count) {
        std::string part(front.substr(0, count));
        front.remove_prefix(count);
        return part;
    };
    if (extras.grouped) {
        group = take(1);
        format |= kGrouped23;
    }
    if (extras.encrypted) {
        method = take(1);
        format |= kEncrypted23;
    }
    if (extras.hasLength && extras.compressed) {
        unsigned value = 0;
        for (const char c : take(4))
            value = value << 7U | (static_cast<unsigned char>(c) & 0x7FU);
        for (const unsigned shift : {24U, 16U, 8U, 0U})
            length += static_cast<char>(value >> shift & 0xFFU);
        format |= kCompressed23;
    }
    const std::string_view stored = frame.data.substr(extras.bytes);
    std::string data = length + method + group;
    if (frame.unsynchronised)
        data += Resynchronise(stored);
    else
        data += stored;
    return MakeFrame23(NameIn23(frame), data, {FlagsFrom24(frame.statusFlags), format});
}

// Walks the frames of one tag, or those within a chapter.
class FormMaker
{
public:
    // `mayUnpack`: how many bytes the frames within chapters may together unpack to.
    FormMaker(const FrameList &list, std::vector<std::string> &lost, std::size_t &mayUnpack,
              int depth = 0)
        : m_list(list), m_lost(lost), m_mayUnpack(mayUnpack), m_depth(depth)
    {
        for (const Frame &frame : list.frames) {
            m_hasDate |= frame.id == "TYER" || frame.id == "TDAT" || frame.id == "TIME";
            m_hasOriginalYear |= frame.id == "TORY";
            m_arePeopleDone |= frame.id == "IPLS";
        }
    }

    std::vector<FrameForm> Run()
    {
        std::vector<FrameForm> forms;
        forms.reserve(m_list.frames.size());
        for (const Frame &frame : m_list.frames) {
            const bool isAsStored = frame.majorVersion == 3;
            forms.push_back(
                {&frame, isAsStored, isAsStored ? std::vector<std::string>() : FramesFor(frame)});
        }
        return forms;
    }

private:
    std::vector<std::string> FramesFor(const Frame &frame)
    {
        return frame.majorVersion == 2 ? Of22(frame) : Of24(frame);
    }

    std::vector<std::string> Lost(const Frame &frame)
    {
        m_lost.emplace_back(frame.id);
        return {};
    }

    std::vector<std::string> FrameOrLost(const Frame &frame, std::optional<std::string> form)
    {
        if (!form)
            return Lost(frame);
        std::vector<std::string> frames;
        frames.push_back(*std::move(form));
        return frames;
    }

    // Source: section 4 of the version 2.2 document.
    std::vector<std::string> Of22(const Frame &frame)
    {
        if (frame.id.size() == 4)
            return {MakeFrame23(frame.id, frame.data)};
        if (frame.id == "PIC" && frame.data.size() > 5)
            return {MakeFrame23("APIC", Picture(frame.data))};
        return Lost(frame);
    }

    // The format's three letters become a MIME type; "-->" says that a link follows.
    static std::string Picture(std::string_view data)
    {
        const std::string_view format = data.substr(1, 3);
        std::string type;
        if (format == "PNG")
            type = "image/png";
        else if (format == "JPG")
            type = "image/jpeg";
        else if (format == "-->")
            type = format;
        else {
            type = "image/";
            for (const char c : format)
                type += static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
        }
        return std::string(data.substr(0, 1)) + type + '\0' + std::string(data.substr(4));
    }

    std::vector<std::string> Of24(const Frame &frame)
    {
        if (frame.id == "SEEK")
            return {};
        if (frame.id == "ASPI") // the positions in it are not those of the new file
            return Lost(frame);
        std::string buffer;
        const auto content = ViewContent(frame, buffer);
        if (!content || content->empty())
            return FrameOrLost(frame, Repacked(frame));
        if (frame.id == "TDRC" && !m_hasDate)
            return RecordingDate(frame, *content);
        if (frame.id == "TDOR" && !m_hasOriginalYear)
            return OriginalDate(frame, *content);
        if (CanJoin(frame))
            return People(frame);
        if ((frame.id == "CHAP" || frame.id == "CTOC") && m_depth < kDeepest)
            return Chapter(frame, *content);
        return FrameOrLost(frame, Plain(frame, *content));
    }

    static std::optional<std::string> Plain(const Frame &frame, std::string_view content)
    {
        const std::string_view layout = LayoutOf(frame.id);
        const bool isOldEncoding = static_cast<unsigned char>(content.front()) < 2;
        if (layout.empty() || isOldEncoding)
            return Repacked(frame);
        const auto changed = InOldEncoding(content, layout);
        return changed ? WithGroup(frame, *changed) : Repacked(frame);
    }

    static std::string WithGroup(const Frame &frame, const std::string &content)
    {
        const std::string group(frame.data.substr(0, ExtrasOf(frame).grouped ? 1 : 0));
        return MakeFrame23(NameIn23(frame), group + content,
                           {FlagsFrom24(frame.statusFlags), group.empty() ? 0U : kGrouped23});
    }

    std::vector<std::string> RecordingDate(const Frame &frame, std::string_view content)
    {
        const auto values = ValuesOf(frame);
        if (values.size() == 1 && BeginsWithYear(values.front()))
            return RecordingTime(values.front());
        return FrameOrLost(frame, Plain(frame, content));
    }

    std::vector<std::string> OriginalDate(const Frame &frame, std::string_view content)
    {
        const auto values = ValuesOf(frame);
        std::vector<std::string> frames;
        if (!values.empty() && BeginsWithYear(values.front()))
            frames.push_back(TextFrame("TORY", {values.front().substr(0, 4)}));
        if (frames.empty() || values.size() > 1 || values.front().size() > 4)
            for (auto &form : FrameOrLost(frame, Plain(frame, content)))
                frames.push_back(std::move(form));
        return frames;
    }

    // --- people: version 2.3 has one list of them, which takes the place of the first list

    // Whether the people of this frame are joined into that list. A frame with too many people
    // stays as it is, and so does each one in a tag that has an IPLS frame already.
    bool CanJoin(const Frame &frame)
    {
        if (frame.id != "TIPL" && frame.id != "TMCL")
            return false;
        if (!std::exchange(m_arePeopleDone, true))
            CollectPeople();
        return std::binary_search(m_joined.begin(), m_joined.end(), &frame);
    }

    std::vector<std::string> People(const Frame &frame)
    {
        if (&frame != m_joined.front())
            return {};
        return {TextFrame("IPLS", m_people)};
    }

    void CollectPeople()
    {
        for (const Frame &frame : m_list.frames) {
            if (frame.id != "TIPL" && frame.id != "TMCL")
                continue;
            std::string buffer;
            const auto content = ViewContent(frame, buffer);
            if (!content || content->empty())
                continue;
            const ContentReader reader(*content, "eT");
            if (!reader.IsWhole())
                continue;
            m_joined.push_back(&frame);
            for (const Piece &piece : reader.pieces)
                m_people.push_back(piece.text.value_or(std::string()));
        }
    }

    // A chapter or table of contents: its name and the data after it are not changed, its frames
    // get the form of version 2.3.
    std::vector<std::string> Chapter(const Frame &frame, std::string_view content)
    {
        std::size_t at = content.find('\0');
        if (at == std::string_view::npos)
            return Lost(frame);
        ++at;
        if (frame.id == "CHAP") {
            at += 16;
        } else {
            int children =
                at + 1 < content.size() ? static_cast<unsigned char>(content[at + 1]) : 0;
            for (at += 2; children > 0 && at < content.size(); --children)
                at = std::min(content.find('\0', at), content.size() - 1) + 1;
        }
        if (at > content.size())
            return Lost(frame);
        std::string within(kTagHeaderBytes, '\0');
        within += content.substr(at);
        const TagHeader header{4, 0, static_cast<std::int64_t>(content.size() - at)};
        const FrameList list = ReadFrames(header, within, m_mayUnpack);
        m_mayUnpack -= std::min(m_mayUnpack, list.unpackedBytes);
        std::string data(content.substr(0, at));
        for (const FrameForm &form : FormMaker(list, m_lost, m_mayUnpack, m_depth + 1).Run())
            form.ForEach([&data](std::string_view bytes) { data += bytes; });
        data += list.rest;
        return {WithGroup(frame, data)};
    }

    const FrameList &m_list;
    std::vector<std::string> &m_lost;
    std::size_t &m_mayUnpack;
    int m_depth;
    bool m_hasDate = false, m_hasOriginalYear = false, m_arePeopleDone = false;
    std::vector<const Frame *> m_joined; // in the order of the list
    std::vector<std::string> m_people;
};

} // namespace

bool BeginsWithYear(std::string_view time)
{
    return time.size() >= 4 && IsDigits(time.substr(0, 4));
}

std::vector<FrameForm> FormsOf(const FrameList &list, std::vector<std::string> &lost)
{
    std::size_t mayUnpack = kMaxUnpackedInTag;
    return FormMaker(list, lost, mayUnpack).Run();
}

std::vector<std::string> RecordingTime(std::string_view timestamp)
{
    const std::string time(timestamp);
    const std::string month = Digits(time, 5), day = Digits(time, 8);
    const std::string hour = Digits(time, 11), minute = Digits(time, 14);
    std::vector<std::string> frames{TextFrame("TYER", {time.substr(0, 4)})};
    std::string held = time.substr(0, 4);
    if (!month.empty() && !day.empty()) {
        frames.push_back(TextFrame("TDAT", {day + month}));
        held += "-" + month + "-" + day;
        if (!hour.empty() && !minute.empty()) {
            frames.push_back(TextFrame("TIME", {hour + minute}));
            held += "T" + hour + ":" + minute;
        }
    }
    if (held != time)
        frames.push_back(TextFrame("TDRC", {time}));
    return frames;
}

} // namespace metadata::unicode
