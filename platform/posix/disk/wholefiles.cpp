#include "platform/disk/wholefiles.h"

#include "platform/posix/disk/descriptor.h"
#include "platform/posix/disk/temporaryname.h"
#include "runtime/paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace platform
{

namespace
{

using posix::Descriptor;

constexpr mode_t kOwnersAlone = 0600;

bool WriteAll(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Returns: a descriptor, or -1 with errno set. A missing file is created; `how` has further flags.
int OpenToAppend(const std::string &path, int how = 0)
{
    const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | how;
    int fd = open(path.c_str(), flags | O_NONBLOCK, kOwnersAlone);
    if (fd < 0 && errno == EWOULDBLOCK) // another program holds a lease and must give it up
        fd = open(path.c_str(), flags, kOwnersAlone);
    struct stat status {
    };
    if (fd < 0 || (fstat(fd, &status) == 0 && S_ISREG(status.st_mode)))
        return fd;
    close(fd);
    errno = EINVAL;
    return -1;
}

// Whether the open file still has a name. Only the number of its names is requested: after a
// program has read the time of a file's last change, the kernel gives the next write a new time,
// which takes longer than the write.
bool HasName(int fd)
{
    struct statx status {
    };
    return statx(fd, "", AT_EMPTY_PATH, STATX_NLINK, &status) == 0 && status.stx_nlink > 0;
}

// Where `path` leads through symbolic links, also when there is no file yet. Nothing, with errno
// set, when that cannot be determined (ELOOP: the links lead in a circle).
std::optional<std::string> Resolved(std::string path)
{
    constexpr int kMostLinks = 40; // as many as the kernel follows
    for (int links = 0; links < kMostLinks; ++links) {
        if (char *real = realpath(path.c_str(), nullptr); real != nullptr) {
            path = real;
            std::free(real);
            return path;
        }
        if (errno != ENOENT)
            return std::nullopt;
        char target[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0)
            return path; // no link: the file is to be created here
        const std::string_view next(target, static_cast<std::size_t>(length));
        path.resize(next.starts_with('/') ? 0 : runtime::FolderPart(path).size());
        path.append(next);
    }
    errno = ELOOP;
    return std::nullopt;
}

// Whether the name is that of a file which is not complete: something, the mark, and six letters or
// digits.
bool IsTemporaryName(std::string_view name)
{
    constexpr std::size_t kLetters = posix::kTemporaryEnding.size() - posix::kTemporaryMark.size();
    if (name.size() <= posix::kTemporaryEnding.size())
        return false;
    const std::string_view letters = name.substr(name.size() - kLetters);
    name.remove_suffix(kLetters);
    return name.ends_with(posix::kTemporaryMark) && std::ranges::all_of(letters, [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
           });
}

bool IsOld(const struct stat &file)
{
    constexpr time_t kDay = 24 * 60 * 60;
    return time(nullptr) - file.st_mtim.tv_sec >= kDay;
}

} // namespace

std::optional<std::string> ReadRegularFile(const std::string &path, std::size_t maxBytes)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {
    };
    if (!file || fstat(file.Get(), &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    // Files of /proc and /sys report no true size, so the read continues to the end all the same.
    constexpr std::size_t kChunk = 64u << 10;
    std::string bytes;
    bytes.reserve(std::min(maxBytes, static_cast<std::size_t>(status.st_size)) + kChunk);
    while (bytes.size() < maxBytes) {
        const std::size_t before = bytes.size();
        bytes.resize(std::min(maxBytes, before + kChunk));
        const ssize_t got = read(file.Get(), bytes.data() + before, bytes.size() - before);
        bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
    }
    return bytes;
}

bool ReplaceFile(const std::string &path, std::string_view bytes, unsigned mode)
{
    return ReplaceFile(path, {bytes}, mode);
}

bool ReplaceFile(const std::string &path, std::initializer_list<std::string_view> pieces,
                 unsigned mode)
{
    const std::optional<std::string> target = Resolved(path);
    if (!target)
        return false;
    struct stat status {
    };
    if (stat(target->c_str(), &status) == 0)
        mode = status.st_mode & 07777;
    std::string temporary = *target + std::string(posix::kTemporaryEnding);
    bool done = false;
    {
        const Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
        if (!file)
            return false;
        done = std::ranges::all_of(
                   pieces, [&](std::string_view piece) { return WriteAll(file.Get(), piece); }) &&
               fchmod(file.Get(), mode) == 0;
    }
    done = done && rename(temporary.c_str(), target->c_str()) == 0;
    if (!done) {
        const int reason = errno;
        unlink(temporary.c_str());
        errno = reason;
    }
    return done;
}

bool AppendToFile(const std::string &path, std::string_view bytes)
{
    const Descriptor file(OpenToAppend(path));
    return file && WriteAll(file.Get(), bytes);
}

Appender::Appender(std::string path) : m_path(std::move(path))
{
    Open(O_TRUNC);
}

Appender::~Appender()
{
    if (m_fd >= 0)
        close(m_fd);
}

void Appender::Open(int how)
{
    if (m_fd >= 0)
        close(m_fd);
    m_fd = OpenToAppend(m_path, how);
}

bool Appender::Append(std::string_view bytes)
{
    if (m_fd < 0 || !HasName(m_fd))
        Open(0);
    return m_fd >= 0 && WriteAll(m_fd, bytes);
}

void RemoveAbandonedFiles(const std::string &folder)
{
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string &path = entry->path().native();
        struct stat status {
        };
        if (IsTemporaryName(runtime::GetFileName(path)) && lstat(path.c_str(), &status) == 0 &&
            S_ISREG(status.st_mode) && IsOld(status))
            unlink(path.c_str());
    }
}

int CheckAccess(const std::string &path)
{
    return faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK, AT_EACCESS) == 0 ? 0 : errno;
}

bool MakeFolders(const std::string &path)
{
    for (std::size_t at = 1; at != std::string::npos;) {
        at = path.find('/', at);
        const std::string folder = path.substr(0, at);
        if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST && at == std::string::npos)
            return false;
        if (at != std::string::npos)
            ++at;
    }
    struct stat status {
    };
    if (stat(path.c_str(), &status) != 0)
        return false;
    if (S_ISDIR(status.st_mode))
        return true;
    errno = ENOTDIR;
    return false;
}

} // namespace platform
