#include "metadata/songcopy.h"

#include "platform/machine.h"
#include "runtime/error.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace metadata
{

namespace
{

constexpr std::size_t kCopyBuffer = 1u << 20;
constexpr std::size_t kCopyAtOnce = 64u << 20;

void Check(int reason)
{
    if (reason != 0)
        throw runtime::FileError(reason);
}

class OpenHandle
{
public:
    explicit OpenHandle(int handle) : m_handle(handle) {}
    ~OpenHandle() { platform::TheFiles().Close(m_handle); }
    OpenHandle(const OpenHandle &) = delete;
    OpenHandle &operator=(const OpenHandle &) = delete;
    [[nodiscard]] int Get() const { return m_handle; }

private:
    int m_handle;
};

int OpenSong(const std::string &song, platform::FileIdentity &identity)
{
    const int handle = platform::TheFiles().OpenToRead(song, identity);
    if (handle < 0)
        throw runtime::FileError(-handle);
    return handle;
}

// Creates a file in the folder of `finalPath`. Errors: kPathNotFound when there is no such folder.
int CreateBeside(const std::string &finalPath, std::string &temporaryPath)
{
    const int handle = platform::TheFiles().CreateBeside(finalPath, temporaryPath);
    if (handle == -ENOENT)
        throw runtime::RuntimeError(runtime::kPathNotFound);
    if (handle < 0)
        throw runtime::FileError(-handle);
    return handle;
}

// Copies through memory when the operating system cannot copy by itself.
void CopyThroughMemory(int source, std::int64_t offset, int target, std::int64_t count)
{
    std::vector<char> buffer(std::min(kCopyBuffer, static_cast<std::size_t>(count)));
    while (count > 0) {
        const auto wanted = std::min(count, static_cast<std::int64_t>(buffer.size()));
        const auto got = platform::TheFiles().ReadAt(source, offset, buffer.data(),
                                                     static_cast<std::size_t>(wanted), true);
        if (got <= 0) // the song has become shorter, or cannot be read: no copy is made
            throw runtime::FileError(got < 0 ? static_cast<int>(-got) : EIO);
        Check(
            platform::TheFiles().WriteAll(target, {buffer.data(), static_cast<std::size_t>(got)}));
        offset += got;
        count -= got;
    }
}

void CopyRange(int source, std::int64_t offset, int target, std::int64_t count)
{
    while (count > 0) {
        const auto wanted = std::min<std::int64_t>(count, kCopyAtOnce);
        const auto copied = platform::TheFiles().CopyRange(source, offset, target,
                                                           static_cast<std::size_t>(wanted));
        if (copied == 0 || copied == -EXDEV || copied == -EINVAL || copied == -EOPNOTSUPP)
            return CopyThroughMemory(source, offset, target, count);
        if (copied < 0)
            throw runtime::FileError(static_cast<int>(-copied));
        offset += copied;
        count -= copied;
    }
}

// The file at `copyPath` belongs to an edit that is still running, which has it locked, or was left
// by an edit that was interrupted. In the second case it is locked and replaced by `temporaryPath`.
// Returns: false in the first case.
bool TakePlaceOfStale(const std::string &temporaryPath, const std::string &copyPath)
{
    platform::FileIdentity stale;
    const int handle = platform::TheFiles().OpenToRead(copyPath, stale);
    if (handle == -ENOENT)
        return true; // it has been removed meanwhile
    if (handle < 0) {
        Check(platform::TheFiles().Rename(temporaryPath, copyPath));
        return true;
    }
    const OpenHandle held(handle);
    if (platform::TheFiles().TryLock(handle) == EWOULDBLOCK)
        return false;
    platform::FileIdentity now;
    if (platform::TheFiles().Identify(copyPath, now) == 0 && now.inode == stale.inode &&
        now.device == stale.device)
        Check(platform::TheFiles().Rename(temporaryPath, copyPath));
    return true;
}

bool IsThere(const std::string &path)
{
    platform::FileIdentity identity;
    return platform::TheFiles().Identify(path, identity) == 0;
}

// Gives the new file the name `copyPath`. Returns: false when another edit that is still running
// has its copy there.
bool ClaimName(const std::string &temporaryPath, const std::string &copyPath)
{
    for (;;) {
        const int reason = platform::TheFiles().RenameNew(temporaryPath, copyPath);
        if (reason != EEXIST) {
            Check(reason);
            return true;
        }
        if (!TakePlaceOfStale(temporaryPath, copyPath))
            return false;
        if (!IsThere(temporaryPath)) // it has the name now
            return true;
    }
}

bool ReplaceName(const std::string &temporaryPath, const std::string &copyPath)
{
    Check(platform::TheFiles().Rename(temporaryPath, copyPath));
    return true;
}

// Creates a file, calls `fill` to write it and `name` to give it its name. It is on the disk before
// it gets the name. It is removed after an error, and when `name` returns false.
template <class Fill, class Name>
std::optional<SongCopy> WriteWhole(const std::string &copyPath, const Fill &fill, const Name &name)
{
    std::string temporaryPath;
    try {
        const int handle = CreateBeside(copyPath, temporaryPath);
        SongCopy copy(handle, {});
        fill(handle);
        (void)platform::TheFiles().TryLock(handle); // no other program has the file open yet
        Check(platform::TheFiles().Flush(handle));
        platform::FileIdentity identity;
        Check(platform::TheFiles().Identify(temporaryPath,
                                            identity)); // under a name that no one else has
        copy.SetIdentity(identity);
        if (name(temporaryPath, copyPath))
            return copy;
        platform::TheFiles().Delete(temporaryPath);
        return std::nullopt;
    } catch (const runtime::RuntimeError &) {
        platform::TheFiles().Delete(temporaryPath); // when this fails too, the file stays
        throw;
    }
}

} // namespace

SongCopy::SongCopy(int handle, platform::FileIdentity identity)
    : m_handle(handle), m_identity(std::move(identity))
{
}

SongCopy::SongCopy(SongCopy &&other) noexcept
    : m_handle(std::exchange(other.m_handle, -1)), m_identity(std::move(other.m_identity))
{
}

SongCopy &SongCopy::operator=(SongCopy &&other) noexcept
{
    std::swap(m_handle, other.m_handle);
    std::swap(m_identity, other.m_identity);
    return *this;
}

SongCopy::~SongCopy()
{
    if (m_handle >= 0)
        platform::TheFiles().Close(m_handle);
}

std::optional<SongCopy> WriteNewSong(const std::string &song, const NewSong &content,
                                     const std::string &copyPath)
{
    platform::FileIdentity identity;
    const OpenHandle source(OpenSong(song, identity));
    if (content.audioOffset < 0 || content.audioBytes < 0 ||
        content.audioBytes > identity.sizeBytes - content.audioOffset)
        throw runtime::RuntimeError(runtime::kInvalidCall);
    return WriteWhole(
        copyPath,
        [&](int target) {
            Check(platform::TheFiles().CopyPermissions(source.Get(), target));
            Check(platform::TheFiles().WriteAll(target, content.front));
            CopyRange(source.Get(), content.audioOffset, target, content.audioBytes);
            Check(platform::TheFiles().WriteAll(target, content.back));
        },
        ClaimName);
}

void CopySong(const std::string &song, const std::string &copyPath)
{
    platform::FileIdentity identity;
    platform::FileIdentity earlier;
    const OpenHandle source(OpenSong(song, identity));
    if (platform::TheFiles().Identify(copyPath, earlier) == 0 &&
        earlier.device == identity.device && earlier.inode == identity.inode)
        throw runtime::RuntimeError(runtime::kPermissionDenied);
    WriteWhole(
        copyPath,
        [&](int target) {
            CopyRange(source.Get(), 0, target, identity.sizeBytes);
            (void)platform::TheFiles().CopyPermissions(
                source.Get(),
                target); // the folder of backups may be on a file system without permissions
        },
        ReplaceName);
    Check(platform::TheFiles().FlushFolderOf(copyPath));
}

} // namespace metadata
