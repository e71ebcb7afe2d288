#include "metadata/filepass.h"

#include "metadata/id3v2.h"
#include "metadata/mpegheader.h"
#include "platform/machine.h"

#include <algorithm>
#include <cerrno>
#include <new>

namespace metadata
{

namespace
{

constexpr std::int64_t kTagHeaderBytes = 10;
constexpr std::size_t kFirstRead = 8192;         // tag and search in one go, but for pictures
constexpr std::int64_t kKeptBuffer = 4LL << 20;  // a larger one goes with its file
constexpr std::int64_t kSettledNs = 100'000'000; // well above the grain of fine time stamps
constexpr std::int64_t kCoarseSettledNs = 3'000'000'000; // above that of whole or even seconds

// The header search's reach and the four header bytes at its last position.
static_assert(kFirstRead >= kLastSearchPosition + 4);

struct OpenFile {
    int handle;
    const std::function<void()> &beforeSlowRead;
    FileBytes &bytes;
};

// The device whose file system cannot say whether bytes are in memory; asked once.
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

// Reads until `count` bytes are there, the file ends or fails; the count read.
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

// Reads the head on up to `count` bytes in all, as far as the file goes.
void ExtendHead(const OpenFile &file, std::int64_t count)
{
    FileBytes &bytes = file.bytes;
    const auto wanted = static_cast<std::size_t>(std::min(count, bytes.file.sizeBytes));
    if (bytes.head.size() < wanted)
        bytes.head.resize(wanted);
    if (wanted > bytes.headBytes)
        bytes.headBytes += ReadFully(file, static_cast<std::int64_t>(bytes.headBytes),
                                     bytes.head.data() + bytes.headBytes, wanted - bytes.headBytes);
}

// What the tag header says. A size of which a byte is missing stays 0.
void TakeTagHeader(FileBytes &bytes)
{
    bytes.hasID3v2Header = bytes.Head().substr(0, 3) == "ID3";
    if (!bytes.hasID3v2Header)
        return;
    bytes.majorVersion = bytes.ByteAt(4);
    if (bytes.headBytes >= kTagHeaderBytes)
        bytes.bodyBytes = FindNumber(bytes.Head().substr(6), 128).value_or(0);
    bytes.claimsTooMuch = bytes.bodyBytes > bytes.file.sizeBytes;
}

// Makes the whole body readable in the buffer, NULs standing for what the file lacks.
void CompleteBody(const OpenFile &file)
{
    FileBytes &bytes = file.bytes;
    const std::int64_t bodyEnd = kTagHeaderBytes + bytes.bodyBytes;
    ExtendHead(file, bodyEnd + 4); // the header may be looked for right behind the tag
    if (bytes.head.size() < static_cast<std::size_t>(bodyEnd))
        bytes.head.resize(static_cast<std::size_t>(bodyEnd));
    if (bytes.headBytes < static_cast<std::size_t>(bodyEnd))
        std::fill(bytes.head.begin() + static_cast<std::ptrdiff_t>(bytes.headBytes),
                  bytes.head.begin() + static_cast<std::ptrdiff_t>(bodyEnd), '\0');
}

void ReadTail(const OpenFile &file)
{
    FileBytes &bytes = file.bytes;
    constexpr std::int64_t kTailBytes = std::tuple_size_v<decltype(bytes.tail)>;
    const std::int64_t offset = bytes.file.sizeBytes - kTailBytes;
    if (offset < 0)
        return;
    const auto known = static_cast<std::int64_t>(bytes.headBytes) - offset;
    const auto copied = static_cast<std::size_t>(std::clamp<std::int64_t>(known, 0, kTailBytes));
    std::copy_n(bytes.head.data() + (copied == 0 ? 0 : offset), copied, bytes.tail.data());
    const auto read = ReadFully(file, offset + static_cast<std::int64_t>(copied),
                                bytes.tail.data() + copied, kTailBytes - copied);
    bytes.hasTail = copied + read >= 3; // enough to begin with "TAG"
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
}

// Everything but the buffer as before any file.
void Clear(FileBytes &bytes)
{
    std::vector<char> buffer = std::move(bytes.head);
    if (static_cast<std::int64_t>(buffer.capacity()) > kKeptBuffer)
        buffer = {};
    bytes = {};
    bytes.head = std::move(buffer);
}

int FailureOfKind(platform::FileKind kind)
{
    switch (kind) {
    case platform::FileKind::Regular:
        return 0;
    case platform::FileKind::Folder:
        return EISDIR;
    default:
        return ESPIPE; // a pipe or a device has no positions to read at
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

bool IsStillTheSame(const std::string &path, FileBytes &bytes)
{
    if (!bytes.opened || bytes.failure != 0 || bytes.file.path != path)
        return false;
    const bool coarse = bytes.file.changedNs % 1'000'000'000 == 0;
    const std::int64_t settled = coarse ? kCoarseSettledNs : kSettledNs;
    if (bytes.openedAtNs - bytes.file.changedNs < settled)
        return false;
    platform::FileIdentity now;
    return platform::TheMachine().files->Identify(path, now) == 0 && now == bytes.file;
}

} // namespace metadata
