#include "metadata/filepass.h"

#include "metadata/headdigest.h"
#include "metadata/id3v2.h"
#include "metadata/mpegheader.h"
#include "metadata/unicode/tagwalk.h"
#include "platform/machine.h"
#include "shell/globals.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace metadata
{

namespace
{

constexpr std::string_view kTagMark = "ID3";
constexpr std::int64_t kBehindTag =
    4; // bytes after the tag that are read too: the audio header may begin there
constexpr std::int64_t kTailBytes{std::tuple_size_v<decltype(FileBytes::tail)>};
constexpr std::int64_t kImageOnly{kImageBytes};
// Enough for the header search, and for the tag unless it is long. More would only be copied.
constexpr std::size_t kFirstRead = 5120;
constexpr std::int64_t kKeptBuffer = 4LL << 20; // a larger buffer is freed after its file

// The header search's reach and the four header bytes at its last position.
static_assert(kFirstRead >= kLastSearchPosition + 4);

// How much of a file's end a pass reads.
std::int64_t TailBytes(bool readsUnicode)
{
    return readsUnicode ? kTailBytes : kImageOnly;
}

struct OpenFile {
    int handle;
    const std::function<void()> &beforeSlowRead;
    FileBytes &bytes;
};

// The last device whose file system could not report whether bytes are in memory: it is not asked
// again.
struct State {
    bool known = false;
    std::uint64_t device = 0;
};

State &BlindDevice()
{
    static State state;
    return state;
}

std::int64_t ReadSome(const OpenFile &file, std::int64_t offset, char *to, std::size_t count)
{
    platform::Files &files = *platform::TheMachine().files;
    State &blind = BlindDevice();
    const bool ask = !(blind.known && blind.device == file.bytes.file.device);
    if (ask) {
        const auto got = files.ReadAt(file.handle, offset, to, count, false);
        if (got != -EAGAIN && got != -EOPNOTSUPP)
            return got;
        if (got == -EOPNOTSUPP)
            blind = {true, file.bytes.file.device};
    }
    if (file.beforeSlowRead)
        file.beforeSlowRead();
    return files.ReadAt(file.handle, offset, to, count, true);
}

// Reads until `count` bytes have been read, the file ends or a read fails. Returns: the count read.
std::size_t ReadFully(const OpenFile &file, std::int64_t offset, char *to, std::size_t count)
{
    std::size_t done = 0;
    while (done < count) {
        const auto got =
            ReadSome(file, offset + static_cast<std::int64_t>(done), to + done, count - done);
        if (got < 0)
            file.bytes.failure = static_cast<int>(-got);
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

// Reads more of the beginning, until `count` bytes of it are there or the file ends.
void ExtendHead(const OpenFile &file, std::int64_t count)
{
    FileBytes &bytes = file.bytes;
    if (bytes.headBytes == 0)
        bytes.headBytes =
            platform::TheMachine().files->TakeStart(file.handle, bytes.head, bytes.digest);
    const auto wanted = static_cast<std::size_t>(std::min(count, bytes.file.sizeBytes));
    platform::MakeRoom(bytes.head, bytes.headBytes, wanted);
    if (wanted > bytes.headBytes)
        bytes.headBytes += ReadFully(file, static_cast<std::int64_t>(bytes.headBytes),
                                     bytes.head.data() + bytes.headBytes, wanted - bytes.headBytes);
}

// How many of the file's first bytes are needed when it begins with `start`: those of the ID3v2 tag
// and four more. 0 when there is no such tag, or when it claims more bytes than the file has.
std::int64_t HeadBytes(std::string_view start, std::int64_t sizeBytes)
{
    const auto body = FindBodyBytes(start);
    return !body || *body > sizeBytes ? 0 : kTagHeaderBytes + *body + kBehindTag;
}

// What a pass will read of each file, as tags are read now.
platform::WantedBytes BytesOfAPass()
{
    const bool readsUnicode = shell::TheGlobals().UnicodeTags;
    return {kFirstRead, TailBytes(readsUnicode), HeadBytes, readsUnicode ? nullptr : DigestHead};
}

// TakeTagHeader for tags that are read by their frames; a footer counts as a part of the body. A
// tag of an unknown version is ignored.
void TakeKnownHeader(FileBytes &bytes)
{
    const auto header = unicode::ReadTagHeader(bytes.Head());
    if (!header)
        return;
    bytes.hasID3v2Header = true;
    bytes.majorVersion = header->majorVersion;
    if (header->bodyBytes > 0)
        bytes.bodyBytes =
            unicode::BytesThere(*header, bytes.file.sizeBytes) - unicode::kTagHeaderBytes;
}

// Sets the fields of the tag header. If a byte of the size is missing, `bodyBytes` stays 0.
void TakeTagHeader(FileBytes &bytes)
{
    if (bytes.readsUnicode) {
        TakeKnownHeader(bytes);
        return;
    }
    bytes.hasID3v2Header = bytes.Head().starts_with(kTagMark);
    if (!bytes.hasID3v2Header)
        return;
    bytes.majorVersion = bytes.ByteAt(4);
    bytes.bodyBytes = FindBodyBytes(bytes.Head()).value_or(0);
    bytes.claimsTooMuch = bytes.bodyBytes > bytes.file.sizeBytes;
}

// Makes the whole body readable in the buffer, with NULs for what the file lacks.
void CompleteBody(const OpenFile &file)
{
    FileBytes &bytes = file.bytes;
    const std::int64_t bodyEnd = kTagHeaderBytes + bytes.bodyBytes;
    ExtendHead(file, bodyEnd + kBehindTag);
    if (bytes.head.size() < static_cast<std::size_t>(bodyEnd))
        bytes.head.resize(static_cast<std::size_t>(bodyEnd));
    if (bytes.headBytes < static_cast<std::size_t>(bodyEnd))
        std::fill(bytes.head.begin() + static_cast<std::ptrdiff_t>(bytes.headBytes),
                  bytes.head.begin() + static_cast<std::ptrdiff_t>(bodyEnd), '\0');
}

void ReadTail(const OpenFile &file)
{
    FileBytes &bytes = file.bytes;
    const std::int64_t size = bytes.file.sizeBytes;
    if (size < kImageOnly)
        return;
    const std::int64_t wanted = std::min(size, TailBytes(bytes.readsUnicode));
    const std::int64_t offset = size - wanted;
    char *const to = bytes.tail.data() + (kTailBytes - wanted);
    const auto known = static_cast<std::int64_t>(bytes.headBytes) - offset;
    const auto copied = std::clamp<std::int64_t>(known, 0, wanted);
    std::copy_n(bytes.head.data() + (copied == 0 ? 0 : offset), copied, to);
    const auto read =
        ReadFully(file, offset + copied, to + copied, static_cast<std::size_t>(wanted - copied));
    const std::int64_t beforeImage = wanted - kImageOnly;
    bytes.hasTail = copied + static_cast<std::int64_t>(read) >= beforeImage + 3; // "TAG"
}

// The file as WalkTags reads it: the bytes that the pass has, other ones from the disk.
class PassBytes : public unicode::FileBytesPort
{
public:
    explicit PassBytes(const OpenFile &file) : m_file(file) {}

    std::int64_t Length() override { return m_file.bytes.file.sizeBytes; }

    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        const FileBytes &bytes = m_file.bytes;
        if (position >= Length())
            return {};
        count = std::clamp<std::int64_t>(count, 0, Length() - position);
        if (position + count <= static_cast<std::int64_t>(bytes.headBytes))
            return bytes.Head().substr(static_cast<std::size_t>(position),
                                       static_cast<std::size_t>(count));
        const std::int64_t inTail = position - (Length() - kTailBytes);
        if (inTail >= 0 && bytes.hasTail)
            return std::string_view(bytes.tail.data(), bytes.tail.size())
                .substr(static_cast<std::size_t>(inTail), static_cast<std::size_t>(count));
        m_more.resize(static_cast<std::size_t>(count));
        return {m_more.data(), ReadFully(m_file, position, m_more.data(), m_more.size())};
    }

private:
    const OpenFile &m_file;
    std::vector<char> m_more;
};

// The length of the audio frame that begins right after the tag; 0 when none does.
double AudioFrameMs(const FileBytes &bytes)
{
    const auto at = static_cast<std::size_t>(kTagHeaderBytes + bytes.bodyBytes);
    if (!bytes.hasID3v2Header || bytes.headBytes < at + kBehindTag)
        return 0;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes.head[at + i]); };
    if (byte(0) != 0xFF || (byte(1) & 0xE0U) != 0xE0)
        return 0;
    const unsigned version = byte(1) >> 3U & 3U; // 3 = MPEG-1, 2 = MPEG-2, 0 = MPEG-2.5
    const unsigned rate = byte(2) >> 2U & 3U;
    if (version == 1 || rate == 3)
        return 0;
    constexpr std::array<double, 3> kHertz = {44100, 48000, 32000};
    // Layer 3: half the samples at half the rate or less.
    const double samples = version == 3 ? 1152 : 576;
    return samples * 1000 * (version == 3 ? 1 : version == 2 ? 2 : 4) / kHertz.at(rate);
}

void ReadTexts(const OpenFile &file)
{
    PassBytes port(file);
    file.bytes.options.mpegFrameMs = AudioFrameMs(file.bytes);
    file.bytes.texts = unicode::ReadTagTexts(port, file.bytes.options);
}

void ReadOpenFile(const OpenFile &file)
{
    ExtendHead(file, kFirstRead);
    TakeTagHeader(file.bytes);
    if (file.bytes.claimsTooMuch)
        return;
    try {
        if (file.bytes.bodyBytes > 0)
            CompleteBody(file);
    } catch (const std::bad_alloc &) {
        file.bytes.failure = ENOMEM; // the body stays empty
        file.bytes.bodyBytes = 0;
    }
    ReadTail(file);
    if (!file.bytes.readsUnicode || file.bytes.failure != 0)
        return;
    try {
        ReadTexts(file);
    } catch (const std::bad_alloc &) {
        file.bytes.failure = ENOMEM;
    }
}

// Sets all fields to their initial values. The buffer is kept, unless it is large.
void Clear(FileBytes &bytes)
{
    platform::ByteBuffer buffer = std::move(bytes.head);
    std::string path = std::move(bytes.file.path);
    if (static_cast<std::int64_t>(buffer.capacity()) > kKeptBuffer)
        buffer = {};
    path.clear();
    bytes = {};
    bytes.head = std::move(buffer);
    bytes.file.path = std::move(path);
}

int FailureOfKind(platform::FileKind kind)
{
    switch (kind) {
    case platform::FileKind::Regular:
        return 0;
    case platform::FileKind::Folder:
        return EISDIR;
    default:
        return ESPIPE; // a pipe or a device cannot be read at a position
    }
}

} // namespace

std::uint8_t FileBytes::ByteAt(std::int64_t position) const
{
    if (position < 1 || position > static_cast<std::int64_t>(headBytes))
        return 0;
    return static_cast<std::uint8_t>(head[static_cast<std::size_t>(position - 1)]);
}

int ReadFileBytes(const std::string &path, const std::function<void()> &beforeSlowRead,
                  FileBytes &bytes)
{
    platform::Files &files = *platform::TheMachine().files;
    Clear(bytes);
    bytes.openedAtNs = files.StampClockNs();
    bytes.readsUnicode = shell::TheGlobals().UnicodeTags;
    const int handle = files.OpenToRead(path, bytes.file);
    if (handle < 0) {
        bytes.failure = -handle;
        return -1;
    }
    bytes.failure = FailureOfKind(bytes.file.kind);
    bytes.opened = bytes.failure == 0;
    if (bytes.opened)
        ReadOpenFile({handle, beforeSlowRead, bytes});
    if (bytes.claimsTooMuch)
        return handle;
    files.Close(handle);
    return -1;
}

void ExpectReads(const std::vector<std::string> &paths)
{
    platform::TheMachine().files->Expect(paths, BytesOfAPass());
}

void ExpectReadsUnlessInState(const std::vector<platform::FileIdentity> &states)
{
    platform::TheMachine().files->ExpectInState(states, BytesOfAPass());
}

bool IsStillTheSame(const std::string &path, FileBytes &bytes)
{
    if (!bytes.opened || bytes.failure != 0 || bytes.file.path != path ||
        bytes.readsUnicode != shell::TheGlobals().UnicodeTags)
        return false;
    if (!platform::WasSettled(bytes.file, bytes.openedAtNs))
        return false;
    platform::FileIdentity now;
    return platform::TheMachine().files->Identify(path, now) == 0 && now == bytes.file;
}

} // namespace metadata
