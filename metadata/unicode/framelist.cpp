#include "metadata/unicode/framelist.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <utility>

namespace metadata::unicode
{

namespace
{

constexpr unsigned kTagUnsynchronised = 0x80; // of every version
constexpr unsigned kTagCompressed = 0x40;     // of version 2.2: a scheme that was never defined
constexpr unsigned kTagExtended = 0x40;       // of versions 2.3 and 2.4

// Format flags of a frame: version 2.3, section 3.3.1.
constexpr unsigned k23Compressed = 0x80;
constexpr unsigned k23Encrypted = 0x40;
constexpr unsigned k23Grouped = 0x20;
// Version 2.4, section 4.1.2.
constexpr unsigned k24Grouped = 0x40;
constexpr unsigned k24Compressed = 0x08;
constexpr unsigned k24Encrypted = 0x04;
constexpr unsigned k24Unsynchronised = 0x02;
constexpr unsigned k24DataLength = 0x01;

// The names of version 2.2 whose frames have the same content in 2.3: version 2.2, section 4, and
// the ones that a well-known program added. PIC, LNK and CRM are built differently.
constexpr std::array<std::pair<std::string_view, std::string_view>, 73> kOldNames = {{
    {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"EQU", "EQUA"},
    {"ETC", "ETCO"}, {"GEO", "GEOB"}, {"GP1", "GRP1"}, {"IPL", "IPLS"}, {"MCI", "MCDI"},
    {"MLL", "MLLT"}, {"MVI", "MVIN"}, {"MVN", "MVNM"}, {"PCS", "PCST"}, {"POP", "POPM"},
    {"REV", "RVRB"}, {"RVA", "RVAD"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"},
    {"TBP", "TBPM"}, {"TCM", "TCOM"}, {"TCO", "TCON"}, {"TCP", "TCMP"}, {"TCR", "TCOP"},
    {"TDA", "TDAT"}, {"TDS", "TDES"}, {"TDY", "TDLY"}, {"TEN", "TENC"}, {"TFT", "TFLT"},
    {"TID", "TGID"}, {"TIM", "TIME"}, {"TKE", "TKEY"}, {"TLA", "TLAN"}, {"TLE", "TLEN"},
    {"TMT", "TMED"}, {"TOA", "TOPE"}, {"TOF", "TOFN"}, {"TOL", "TOLY"}, {"TOR", "TORY"},
    {"TOT", "TOAL"}, {"TP1", "TPE1"}, {"TP2", "TPE2"}, {"TP3", "TPE3"}, {"TP4", "TPE4"},
    {"TPA", "TPOS"}, {"TPB", "TPUB"}, {"TRC", "TSRC"}, {"TRD", "TRDA"}, {"TRK", "TRCK"},
    {"TS2", "TSO2"}, {"TSA", "TSOA"}, {"TSC", "TSOC"}, {"TSI", "TSIZ"}, {"TSP", "TSOP"},
    {"TSS", "TSSE"}, {"TST", "TSOT"}, {"TT1", "TIT1"}, {"TT2", "TIT2"}, {"TT3", "TIT3"},
    {"TXT", "TEXT"}, {"TXX", "TXXX"}, {"TYE", "TYER"}, {"UFI", "UFID"}, {"ULT", "USLT"},
    {"WAF", "WOAF"}, {"WAR", "WOAR"}, {"WAS", "WOAS"}, {"WCM", "WCOM"}, {"WCP", "WCOP"},
    {"WFD", "WFED"}, {"WPB", "WPUB"}, {"WXX", "WXXX"},
}};

std::uint32_t Number(std::string_view bytes, unsigned bitsPerByte)
{
    std::uint32_t value = 0;
    for (const char byte : bytes)
        value = value << bitsPerByte | static_cast<unsigned char>(byte);
    return value;
}

std::uint32_t PlainNumber(std::string_view bytes)
{
    return Number(bytes, 8);
}

// Seven bits a byte (section 6.2). A number with a higher bit set is read as a plain one: some
// programs write such numbers.
std::uint32_t SafeNumber(std::string_view bytes)
{
    const bool isSafe = std::all_of(bytes.begin(), bytes.end(), [](char byte) {
        return static_cast<unsigned char>(byte) < 0x80;
    });
    return Number(bytes, isSafe ? 7 : 8);
}

std::optional<TagHeader> ReadHeader(std::string_view bytes, std::string_view mark)
{
    if (bytes.size() < static_cast<std::size_t>(kTagHeaderBytes) || !bytes.starts_with(mark))
        return std::nullopt;
    TagHeader header;
    header.majorVersion = static_cast<unsigned char>(bytes[3]);
    header.flags = static_cast<unsigned char>(bytes[5]);
    header.bodyBytes = SafeNumber(bytes.substr(6, 4));
    if (header.majorVersion < 2 || header.majorVersion > 4)
        return std::nullopt;
    return header;
}

bool IsIdentifier(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

constexpr std::size_t kOldNameBytes = 3; // of every first name in kOldNames

// The identifier of version 2.3. Some programs keep a name of version 2.2 in a later tag, filled up
// with a NUL or a blank.
std::string_view NewName(std::string_view name)
{
    if (name.size() == 4 && (name[3] == '\0' || name[3] == ' '))
        name.remove_suffix(1);
    if (name.size() != kOldNameBytes)
        return name;
    const auto *const known = std::find_if(kOldNames.begin(), kOldNames.end(),
                                           [&](const auto &pair) { return pair.first == name; });
    return known == kOldNames.end() ? name : known->second;
}

bool IsFrameName(std::string_view name)
{
    if (name.size() == 4 && (name[3] == '\0' || name[3] == ' '))
        name.remove_suffix(1);
    return IsIdentifier(name);
}

// `bytes` with the unsynchronisation undone, appended to `out`.
template <class Bytes>
void AppendResynchronised(std::string_view bytes, Bytes &out)
{
    out.reserve(out.size() + bytes.size());
    while (!bytes.empty()) {
        const std::size_t mark = std::min(bytes.find('\xFF'), bytes.size() - 1) + 1;
        out.insert(out.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(mark));
        const bool hasNul = bytes[mark - 1] == '\xFF' && mark < bytes.size() && bytes[mark] == '\0';
        bytes.remove_prefix(mark + (hasNul ? 1 : 0));
    }
}

// Unpacks into `out`, where that is given. The length that a frame claims for itself is not
// trusted: the bound ends what grows too far.
// Returns: the number of bytes; no value when `packed` is damaged; more than `most` when the
// content is longer than that.
std::optional<std::size_t> Inflate(std::string_view packed, std::size_t most, std::string *out)
{
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return std::nullopt;
    std::string in(packed); // zlib takes no pointer to const
    stream.next_in = reinterpret_cast<Bytef *>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    std::array<char, 16384> piece{};
    std::size_t count = 0;
    int result = Z_OK;
    while (result == Z_OK && count <= most) {
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        result = inflate(&stream, Z_NO_FLUSH);
        const std::size_t got = piece.size() - stream.avail_out;
        count += got;
        if (out != nullptr)
            out->append(piece.data(), got);
    }
    inflateEnd(&stream);
    return result == Z_STREAM_END || count > most ? std::optional(count) : std::nullopt;
}

// The bytes of a frame after those that its flags announce, synchronised; a view into the tag or
// into `buffer`.
// Returns: no value when the frame ends within the announced bytes.
std::optional<std::string_view> StoredContent(const Frame &frame, const FrameExtras &extras,
                                              std::string &buffer)
{
    if (extras.bytes > frame.data.size())
        return std::nullopt;
    const std::string_view stored = frame.data.substr(extras.bytes);
    if (!frame.unsynchronised)
        return stored;
    buffer.clear();
    AppendResynchronised(stored, buffer);
    return buffer;
}

class FrameWalk
{
public:
    FrameWalk(const TagHeader &header, std::string_view body, std::size_t mayUnpack,
              FrameList &list)
        : m_header(header), m_body(body), m_mayUnpack(mayUnpack), m_list(list),
          m_nameBytes(header.majorVersion == 2 ? 3 : 4),
          m_headBytes(header.majorVersion == 2 ? 6 : 10)
    {
    }

    void Run()
    {
        constexpr std::size_t kUsualFrames = 16;
        m_list.frames.reserve(kUsualFrames);
        m_list.rest = m_body;
        if (m_header.majorVersion > 2 && (m_header.flags & kTagExtended) != 0 && !SkipExtended())
            return;
        while (m_list.frames.size() < kMostFrames && AddFrame()) {
        }
        m_list.rest = m_body.substr(std::min<std::uint64_t>(m_at, m_body.size()));
    }

private:
    // Version 2.3, section 3.2: the size does not count its own 4 bytes. Version 2.4, section 3.2:
    // it does, and is stored with seven bits a byte.
    bool SkipExtended()
    {
        if (m_body.size() < 6)
            return false;
        if (IsIdentifier(m_body.substr(0, 4))) // as a size it would be larger than any tag
            return true;
        const bool is24 = m_header.majorVersion == 4;
        const std::uint64_t bytes = is24 ? SafeNumber(m_body.substr(0, 4))
                                         : std::uint64_t{PlainNumber(m_body.substr(0, 4))} + 4;
        // One byte of flags, whose number is in the byte before; 0x40 is "this tag is an update".
        if (is24)
            m_list.isUpdate = (static_cast<unsigned char>(m_body[5]) & 0x40U) != 0;
        m_at = bytes;
        return bytes >= 6 && bytes <= m_body.size();
    }

    // Whether a frame, padding or the end of the tag is at that offset.
    bool IsFrameBoundary(std::uint64_t at) const
    {
        if (at >= m_body.size())
            return at == m_body.size();
        return m_body[at] == '\0' || IsFrameName(m_body.substr(at, m_nameBytes));
    }

    std::uint64_t SizeAt(std::uint64_t at) const
    {
        const std::string_view bytes = m_body.substr(at + m_nameBytes, m_nameBytes);
        const std::uint64_t plain = PlainNumber(bytes);
        if (m_header.majorVersion < 4)
            return plain;
        const std::uint64_t safe = SafeNumber(bytes);
        const std::uint64_t content = at + m_headBytes;
        const bool onlyPlainFits =
            !IsFrameBoundary(content + safe) && IsFrameBoundary(content + plain);
        return onlyPlainFits ? plain : safe;
    }

    bool AddFrame()
    {
        if (m_at + m_headBytes > m_body.size())
            return false;
        const std::string_view name = m_body.substr(m_at, m_nameBytes);
        const std::uint64_t size = SizeAt(m_at);
        const std::uint64_t content = m_at + m_headBytes;
        if (!IsFrameName(name) || content + size > m_body.size())
            return false;
        Frame frame{NewName(name), m_body.substr(content, size), m_header.majorVersion};
        frame.whole = m_body.substr(m_at, m_headBytes + size);
        if (m_nameBytes == 4) {
            frame.statusFlags = static_cast<unsigned char>(m_body[m_at + 8]);
            frame.formatFlags = static_cast<unsigned char>(m_body[m_at + 9]);
        }
        frame.unsynchronised =
            m_header.majorVersion == 4 && ((frame.formatFlags & k24Unsynchronised) != 0 ||
                                           (m_header.flags & kTagUnsynchronised) != 0);
        if (frame.id == "SEEK" && size >= 4)
            m_list.seek = PlainNumber(frame.data.substr(0, 4));
        if (frame.formatFlags != 0)
            MeasureUnpacked(frame);
        m_list.frames.push_back(frame);
        m_at = content + size;
        return true;
    }

    void MeasureUnpacked(Frame &frame)
    {
        const FrameExtras extras = ExtrasOf(frame);
        if (!extras.compressed || extras.encrypted)
            return;
        const std::size_t left = m_mayUnpack - std::min(m_mayUnpack, m_list.unpackedBytes);
        const std::size_t most = std::min(left, kMaxUnpackedBytes);
        std::string buffer;
        const auto stored = StoredContent(frame, extras, buffer);
        const std::size_t bytes = stored ? Inflate(*stored, most, nullptr).value_or(0) : 0;
        frame.isBomb = bytes > most;
        m_list.unpackedBytes += bytes;
    }

    const TagHeader &m_header;
    std::string_view m_body;
    std::size_t m_mayUnpack;
    FrameList &m_list;
    std::uint64_t m_nameBytes;
    std::uint64_t m_headBytes;
    std::uint64_t m_at = 0;
};

} // namespace

std::optional<TagHeader> ReadTagHeader(std::string_view bytes)
{
    return ReadHeader(bytes, "ID3");
}

std::optional<TagHeader> ReadTagFooter(std::string_view bytes)
{
    const auto footer = ReadHeader(bytes, "3DI");
    return footer && footer->majorVersion == 4 ? footer : std::nullopt;
}

std::string Resynchronise(std::string_view bytes)
{
    std::string out;
    AppendResynchronised(bytes, out);
    return out;
}

FrameList ReadFrames(const TagHeader &header, std::string_view tag, std::size_t mayUnpack)
{
    FrameList list;
    std::string_view body =
        tag.substr(std::min<std::size_t>(tag.size(), static_cast<std::size_t>(kTagHeaderBytes)));
    body = body.substr(0, static_cast<std::size_t>(header.bodyBytes));
    list.rest = body;
    if (header.majorVersion == 2 && (header.flags & kTagCompressed) != 0)
        return list;
    if (header.majorVersion < 4 && (header.flags & kTagUnsynchronised) != 0) {
        AppendResynchronised(body, list.resynchronised);
        body = {list.resynchronised.data(), list.resynchronised.size()};
    }
    FrameWalk(header, body, mayUnpack, list).Run();
    return list;
}

FrameExtras ExtrasOf(const Frame &frame)
{
    FrameExtras extras;
    const unsigned flags = frame.formatFlags;
    if (frame.majorVersion == 3) {
        extras.compressed = (flags & k23Compressed) != 0;
        extras.encrypted = (flags & k23Encrypted) != 0;
        extras.grouped = (flags & k23Grouped) != 0;
        extras.hasLength = extras.compressed;
    } else if (frame.majorVersion == 4) {
        extras.compressed = (flags & k24Compressed) != 0;
        extras.encrypted = (flags & k24Encrypted) != 0;
        extras.grouped = (flags & k24Grouped) != 0;
        // A compressed frame always has its length in front (section 4.1.2, flag k).
        extras.hasLength = extras.compressed || (flags & k24DataLength) != 0;
    }
    extras.bytes =
        (extras.hasLength ? 4U : 0U) + (extras.encrypted ? 1U : 0U) + (extras.grouped ? 1U : 0U);
    return extras;
}

std::optional<std::string_view> ViewContent(const Frame &frame, std::string &buffer)
{
    const FrameExtras extras = ExtrasOf(frame);
    if (extras.encrypted || frame.isBomb)
        return std::nullopt;
    const auto stored = StoredContent(frame, extras, buffer);
    if (!stored || !extras.compressed)
        return stored;
    std::string content;
    if (!Inflate(*stored, kMaxUnpackedBytes, &content))
        return std::nullopt;
    buffer = std::move(content);
    return buffer;
}

std::optional<std::string> FrameContent(const Frame &frame)
{
    std::string buffer;
    const auto content = ViewContent(frame, buffer);
    if (!content)
        return std::nullopt;
    if (content->data() != buffer.data())
        buffer = *content;
    return buffer;
}

} // namespace metadata::unicode
