// platform/files.h - the operations on files that songs are read and rewritten with, one system
// call each where the platform allows. Paths are the file system's bytes. Results are an errno (0 =
// done) or a count; nothing throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform
{

enum class FileKind { Regular, Folder, Other };

// Which file a path named, and which state of it. Two equal identities are the same content, unless
// it changed twice within the grain of the file system's clock.
struct FileIdentity {
    std::string path; // as given
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t sizeBytes = 0;
    std::int64_t modifiedNs = 0; // since 1970, UTC
    std::int64_t changedNs = 0;  // of the content or of the rights, since 1970, UTC
    FileKind kind = FileKind::Other;

    bool operator==(const FileIdentity &) const = default;
};

struct Files {
    virtual ~Files() = default;

    // Opens an existing file for reading; never waits for a pipe's other end or a device.
    // Returns: a handle, or the negated errno. `identity` tells what was opened.
    virtual int OpenToRead(const std::string &path, FileIdentity &identity) = 0;

    // What stands at `path` now. Returns an errno.
    virtual int Identify(const std::string &path, FileIdentity &identity) = 0;

    // Up to `count` bytes from `offset` on. With `mayWait` false only bytes that are in memory:
    // -EAGAIN when the first is not, -EOPNOTSUPP where the file system cannot tell.
    // Returns: the count read, 0 at the end, or the negated errno.
    virtual std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                                bool mayWait) = 0;

    virtual void Close(int handle) = 0;

    // Nanoseconds of the clock by which files are stamped, since 1970, UTC.
    virtual std::int64_t StampClockNs() = 0;
};

// The files of this machine.
Files &SystemFiles();

} // namespace platform
