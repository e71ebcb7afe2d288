// The operations of the files port that change files.
#include "platform/posix/disk/systemfiles.h"
#include "platform/posix/disk/temporaryname.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace platform::posix
{

namespace
{

constexpr const char *kAccessList = "system.posix_acl_access";

int Result(int returned)
{
    return returned == 0 ? 0 : errno;
}

// The attributes that users set, access lists included. The kernel sets all others itself on each
// new file.
bool BelongsToUser(std::string_view name)
{
    return name.starts_with("user.") || name.starts_with("system.posix_acl_");
}

// Reads the names of all attributes, each with its NUL, into `names`; none when the file system has
// no attributes. Returns: an errno.
int ListAttributes(int handle, std::vector<char> &names)
{
    for (;;) {
        const ssize_t size = flistxattr(handle, nullptr, 0);
        if (size <= 0)
            return size < 0 && errno != ENOTSUP ? errno : 0;
        names.resize(static_cast<std::size_t>(size));
        const ssize_t got = flistxattr(handle, names.data(), names.size());
        if (got >= 0) {
            names.resize(static_cast<std::size_t>(got));
            return 0;
        }
        if (errno != ERANGE)
            return errno;
    }
}

int CopyAttribute(int source, int target, const char *name)
{
    std::vector<char> value(1024);
    ssize_t size = fgetxattr(source, name, value.data(), value.size());
    if (size < 0 && errno == ERANGE) {
        size = fgetxattr(source, name, nullptr, 0);
        value.resize(static_cast<std::size_t>(size > 0 ? size : 0));
        size = fgetxattr(source, name, value.data(), value.size());
    }
    if (size < 0)
        return errno;
    return Result(fsetxattr(target, name, value.data(), static_cast<std::size_t>(size), 0));
}

// Removes the access list that a new file inherits from its folder.
int DropAccessList(int target)
{
    return fgetxattr(target, kAccessList, nullptr, 0) > 0
               ? Result(fremovexattr(target, kAccessList))
               : 0;
}

int CopyAttributes(int source, int target)
{
    std::vector<char> names;
    if (const int reason = ListAttributes(source, names))
        return reason;
    if (const int reason = DropAccessList(target))
        return reason;
    for (std::size_t at = 0; at < names.size(); at += std::string_view(&names[at]).size() + 1) {
        const int reason = CopyAttribute(source, target, &names[at]);
        if (reason != 0 && reason != ENODATA && BelongsToUser(&names[at]))
            return reason;
    }
    return 0;
}

// `path` without the last `bytes` bytes of its name; a UTF-8 character that this would cut is
// removed whole.
std::string Shortened(std::string path, std::size_t bytes)
{
    const auto isRest = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const std::size_t name = path.rfind('/') + 1; // 0 where there is no folder
    std::size_t length = path.size() - std::min(bytes, path.size() - name);
    while (length > name && length < path.size() && isRest(path[length]))
        --length;
    path.resize(length);
    return path;
}

} // namespace

int SystemFilesPort::RealPath(const std::string &path, std::string &real)
{
    char *found = realpath(path.c_str(), nullptr);
    if (found == nullptr)
        return errno;
    real = found;
    std::free(found);
    return 0;
}

int SystemFilesPort::CreateBeside(const std::string &finalPath, std::string &temporaryPath)
{
    temporaryPath = finalPath + std::string(kTemporaryEnding);
    int handle = mkostemp(temporaryPath.data(), O_CLOEXEC);
    if (handle < 0 && errno == ENAMETOOLONG) { // then a name no longer than the final one
        temporaryPath =
            Shortened(finalPath, kTemporaryEnding.size()) + std::string(kTemporaryEnding);
        handle = mkostemp(temporaryPath.data(), O_CLOEXEC);
    }
    return handle >= 0 ? handle : -errno;
}

int SystemFilesPort::CreateScratch(const std::string &folder)
{
    const int handle = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    return handle >= 0 ? handle : -errno;
}

int SystemFilesPort::OpenLockFile(const std::string &path)
{
    const int handle = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return handle >= 0 ? handle : -errno;
}

std::int64_t SystemFilesPort::Write(int handle, const char *from, std::size_t count)
{
    ssize_t written = 0;
    do
        written = write(handle, from, count);
    while (written < 0 && errno == EINTR);
    return written >= 0 ? written : -errno;
}

std::int64_t SystemFilesPort::CopyRange(int source, std::int64_t offset, int target,
                                        std::size_t count)
{
    ssize_t copied = 0;
    do {
        off64_t from = offset;
        copied = copy_file_range(source, &from, target, nullptr, count, 0);
    } while (copied < 0 && errno == EINTR);
    if (copied >= 0)
        return copied;
    return errno == ENOSYS || errno == EPERM ? -EOPNOTSUPP : -errno;
}

int SystemFilesPort::CopyPermissions(int source, int target)
{
    struct stat from, to;
    if (fstat(source, &from) != 0 || fstat(target, &to) != 0)
        return errno;
    const bool sameOwner = from.st_uid == to.st_uid && from.st_gid == to.st_gid;
    if (!sameOwner && fchown(target, from.st_uid, from.st_gid) != 0)
        return errno;
    if (fchmod(target, from.st_mode & 07777) != 0) // after fchown, which clears bits
        return errno;
    return CopyAttributes(source, target);
}

int SystemFilesPort::Flush(int handle)
{
    int result = 0;
    do
        result = fsync(handle);
    while (result != 0 && errno == EINTR);
    return Result(result);
}

int SystemFilesPort::FlushFolderOf(const std::string &path)
{
    const auto slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return errno;
    const int reason = SystemFilesPort::Flush(handle);
    close(handle);
    return reason == EINVAL ? 0 : reason; // a file system that cannot flush folders
}

int SystemFilesPort::Rename(const std::string &from, const std::string &to)
{
    return Result(rename(from.c_str(), to.c_str()));
}

int SystemFilesPort::RenameNew(const std::string &from, const std::string &to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // The file system does not have this operation: a hard link does the same, if it has those.
    if (link(from.c_str(), to.c_str()) == 0)
        return Result(unlink(from.c_str()));
    if (errno != EPERM && errno != EOPNOTSUPP)
        return errno;
    struct stat status;
    return lstat(to.c_str(), &status) == 0 ? EEXIST : SystemFilesPort::Rename(from, to);
}

int SystemFilesPort::TryLock(int handle)
{
    int result = 0;
    do
        result = flock(handle, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result != 0 && errno == EWOULDBLOCK ? EWOULDBLOCK : 0;
}

int SystemFilesPort::Delete(const std::string &path)
{
    return Result(unlink(path.c_str()));
}

int SystemFilesPort::RemoveFolder(const std::string &path)
{
    return Result(rmdir(path.c_str()));
}

std::int64_t SystemFilesPort::FreeBytes(const std::string &folder)
{
    struct statvfs room {
    };
    if (statvfs(folder.c_str(), &room) != 0)
        return -errno;
    return static_cast<std::int64_t>(room.f_bavail) * static_cast<std::int64_t>(room.f_frsize);
}

int SystemFilesPort::MakeFolder(const std::string &path)
{
    return Result(mkdir(path.c_str(), 0700));
}

} // namespace platform::posix
