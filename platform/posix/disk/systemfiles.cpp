#include "platform/posix/disk/systemfiles.h"

#include "platform/posix/disk/timestamps.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace platform
{

namespace
{

void Take(const struct stat &status, FileIdentity &identity)
{
    identity.device = status.st_dev;
    identity.inode = status.st_ino;
    identity.sizeBytes = status.st_size;
    identity.modifiedNs = posix::Nanoseconds(status.st_mtim);
    identity.changedNs = posix::Nanoseconds(status.st_ctim);
    identity.kind = S_ISREG(status.st_mode)   ? FileKind::Regular
                    : S_ISDIR(status.st_mode) ? FileKind::Folder
                                              : FileKind::Other;
}

// Whether the file system keeps all files in memory; such file systems do not support reading
// without waiting.
bool IsInMemory(int handle)
{
    struct statfs status;
    return fstatfs(handle, &status) == 0 &&
           (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
}

// Whether each change of a file, its rename and its deletion change its time of change, and only
// this machine can change it. `ask` gets the state of its file system; the answer for the last
// device is kept.
template <class Ask>
bool NotesChanges(dev_t device, const Ask &ask)
{
    thread_local struct {
        bool known = false;
        dev_t device = 0;
        bool notes = false;
    } last;
    if (last.known && last.device == device)
        return last.notes;
    struct statfs status;
    const auto is = [&](auto... types) {
        return (... || (status.f_type == static_cast<decltype(status.f_type)>(types)));
    };
    if (ask(status) != 0)
        return false;
    last.notes =
        is(EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, TMPFS_MAGIC);
    last.device = device;
    last.known = true;
    return last.notes;
}

} // namespace

namespace posix
{

int SystemFilesPort::OpenToRead(const std::string &path, FileIdentity &identity)
{
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
    int handle = open(path.c_str(), kFlags | O_NONBLOCK);
    if (handle < 0 && errno == EWOULDBLOCK) // another program holds a lease and must give it up
        handle = open(path.c_str(), kFlags);
    if (handle < 0)
        return -errno;
    struct stat status;
    if (fstat(handle, &status) != 0) {
        const int reason = errno;
        close(handle);
        return -reason;
    }
    identity.path = path;
    Take(status, identity);
    return handle;
}

int SystemFilesPort::Identify(const std::string &path, FileIdentity &identity)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return errno;
    identity.path = path;
    Take(status, identity);
    return 0;
}

int SystemFilesPort::IdentifyOpen(int handle, const std::string &path, FileIdentity &identity)
{
    struct stat status;
    const auto ask = [&](struct statfs &system) { return fstatfs(handle, &system); };
    if (fstat(handle, &status) != 0 || status.st_nlink == 0 || !NotesChanges(status.st_dev, ask))
        return SystemFilesPort::Identify(path, identity);
    identity.path = path;
    Take(status, identity);
    return 0;
}

bool SystemFilesPort::HasChangeTimes(const FileIdentity &file)
{
    return NotesChanges(file.device, [&](struct statfs &system) {
        struct stat status; // the path may lead to another file system by now
        if (stat(file.path.c_str(), &status) != 0 || status.st_dev != file.device)
            return -1;
        return statfs(file.path.c_str(), &system);
    });
}

std::int64_t SystemFilesPort::ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                                     bool mayWait)
{
    for (;;) {
        const iovec part{to, count};
        const ssize_t got = mayWait ? pread(handle, to, count, offset)
                                    : preadv2(handle, &part, 1, offset, RWF_NOWAIT);
        if (got >= 0)
            return got;
        if (!mayWait && (errno == EOPNOTSUPP || errno == ENOSYS)) {
            if (!IsInMemory(handle))
                return -EOPNOTSUPP;
            mayWait = true; // reading never waits there
        } else if (errno != EINTR) {
            return -errno;
        }
    }
}

void SystemFilesPort::Close(int handle)
{
    close(handle);
}

std::int64_t SystemFilesPort::StampClockNs()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return Nanoseconds(now);
}

} // namespace posix

} // namespace platform
