#include "platform/disk/folderreader.h"

#include "platform/posix/disk/descriptor.h"
#include "platform/posix/disk/timestamps.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace platform
{

namespace
{

FolderState StateOf(const struct stat &status)
{
    return {{status.st_dev, status.st_ino},
            posix::Nanoseconds(status.st_mtim),
            posix::Nanoseconds(status.st_ctim)};
}

bool IsDotName(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool IsFolder(DIR *parent, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat status;
    return fstatat(dirfd(parent), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::optional<FolderState> FolderStateAt(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? std::optional(StateOf(status)) : std::nullopt;
}

FolderReader::~FolderReader()
{
    if (m_folder != nullptr)
        closedir(static_cast<DIR *>(m_folder));
}

int FolderReader::Open(const std::string &path, FolderState &state)
{
    DIR *const folder = opendir(path.c_str());
    m_folder = folder;
    struct stat status;
    if (folder == nullptr || fstat(dirfd(folder), &status) != 0)
        return errno;
    state = StateOf(status);
    return 0;
}

bool FolderReader::Next(FolderEntry &entry, int &failure)
{
    auto *const folder = static_cast<DIR *>(m_folder);
    const dirent *found = nullptr;
    do {
        errno = 0;
        found = readdir(folder);
    } while (found != nullptr && IsDotName(found->d_name));
    failure = found == nullptr ? errno : 0;
    if (found == nullptr)
        return false;
    entry = {found->d_name, IsFolder(folder, *found)};
    return true;
}

std::size_t FolderReader::ReadStart(const char *name, char *to, std::size_t count) const
{
    const posix::Descriptor file(
        openat(dirfd(static_cast<DIR *>(m_folder)), name, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const ssize_t got = file ? pread(file.Get(), to, count, 0) : 0;
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

} // namespace platform
