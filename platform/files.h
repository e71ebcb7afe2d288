// platform/files.h - the operations on files that songs are read and rewritten with, one system
// call each where the platform allows. Paths are the file system's bytes. Results are an errno (0 =
// done) or a count; nothing throws.
#pragma once

#include "platform/bytebuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

// Whether a file that was opened at `openedAtNs` (StampClockNs) had not changed for so long that
// another change could not have the same time stamp. Stamps of whole seconds come from clocks of a
// second or two.
[[nodiscard]] inline bool WasSettled(const FileIdentity &file, std::int64_t openedAtNs)
{
    constexpr std::int64_t kSettledNs = 100'000'000; // well above the grain of fine time stamps
    constexpr std::int64_t kCoarseSettledNs = 3'000'000'000;
    const bool isCoarse = file.changedNs % 1'000'000'000 == 0;
    return openedAtNs - file.changedNs >= (isCoarse ? kCoarseSettledNs : kSettledNs);
}

// What was found in a file's first bytes while they were fetched.
struct Digest {
    virtual ~Digest() = default;
};

// What will be read of a file.
struct WantedBytes {
    std::int64_t first = 0; // so many of its first bytes
    std::int64_t last = 0;  // and of its last ones
    // How many of the first bytes in all, told from those and the file's length; null adds none.
    // Called on another thread: it looks at what it is given, and at nothing else.
    std::int64_t (*head)(std::string_view start, std::int64_t sizeBytes) = nullptr;
    // What to find in the first bytes once all of them are there; null finds nothing. Called as
    // `head`.
    std::unique_ptr<Digest> (*digest)(std::string_view start, std::int64_t sizeBytes) = nullptr;
};

struct Files {
    virtual ~Files() = default;

    // Opens an existing file for reading; never waits for a pipe's other end or a device.
    // Returns: a handle, or the negated errno. `identity` says what was opened.
    virtual int OpenToRead(const std::string &path, FileIdentity &identity) = 0;

    // What is at `path` now. Returns an errno.
    virtual int Identify(const std::string &path, FileIdentity &identity) = 0;

    // The same for a file that was opened at that path (OpenToRead). Where its file system notes at
    // the file that it gets another name or none, the open file is looked at, which is faster: that
    // a folder above it got another name is not seen then.
    virtual int IdentifyOpen(int /*handle*/, const std::string &path, FileIdentity &identity)
    {
        return Identify(path, identity);
    }

    // Up to `count` bytes from `offset` on. With `mayWait` false only bytes that are in memory:
    // -EAGAIN when the first is not, -EOPNOTSUPP where the file system does not say.
    // Returns: the count read, 0 at the end, or the negated errno.
    virtual std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                                bool mayWait) = 0;

    // Gives `bytes` the first bytes of the file that were fetched ahead of this call (Expect), in
    // exchange for the buffer that is there, and `digest` what was found in them at their place in
    // memory, which stays the same. Each byte is given or read once.
    // Returns: how many at the front of `bytes` are the file's; 0 where none are there.
    virtual std::size_t TakeStart(int /*handle*/, ByteBuffer & /*bytes*/,
                                  std::unique_ptr<Digest> & /*digest*/)
    {
        return 0;
    }

    virtual void Close(int handle) = 0;

    // The path of the file itself, that all symbolic links lead to. Returns an errno.
    virtual int RealPath(const std::string &path, std::string &real) = 0;

    // Creates a new file in the folder of `finalPath`, under a name of its own that goes to
    // `temporaryPath`, readable by its owner alone. Returns: a handle to write, or the negated
    // errno.
    virtual int CreateBeside(const std::string &finalPath, std::string &temporaryPath) = 0;

    // Writes up to `count` bytes at the handle's place. Returns: the count, or the negated errno.
    virtual std::int64_t Write(int handle, const char *from, std::size_t count) = 0;

    // Copies up to `count` bytes of `source`, from `offset` on, to the place of `target`, without a
    // way through the program's memory.
    // Returns: the count, 0 at the end of `source`, or the negated errno: -EXDEV, -EINVAL or
    // -EOPNOTSUPP where these two files cannot be copied so.
    virtual std::int64_t CopyRange(int source, std::int64_t offset, int target,
                                   std::size_t count) = 0;

    // Gives `target` the owner, the rights and the extended attributes of `source`. Returns an
    // errno when one of those that belong to the user cannot be given.
    virtual int CopyRights(int source, int target) = 0;

    // Brings what was written to the disk. Returns an errno.
    virtual int Flush(int handle) = 0;

    // Brings the names in the folder of `path` to the disk. Returns an errno.
    virtual int FlushFolderOf(const std::string &path) = 0;

    // Gives the file a new name on the same file system, in one step; what stood there is gone.
    // Returns an errno.
    virtual int Rename(const std::string &from, const std::string &to) = 0;

    // The same where no file has that name yet: EEXIST when one has, which then stays.
    virtual int RenameNew(const std::string &from, const std::string &to) = 0;

    // Takes the lock of an open file for this handle, without waiting for another holder; closing
    // the handle gives it back. Locks bind only those who ask for them.
    // Returns: EWOULDBLOCK when another handle has it, in this process or in another; else 0, also
    // where the file system has no locks.
    virtual int TryLock(int handle) = 0;

    // Removes the name. Returns an errno.
    virtual int Delete(const std::string &path) = 0;

    // Creates a folder in an existing one, open to its owner alone. Returns an errno.
    virtual int MakeFolder(const std::string &path) = 0;

    // Removes an empty folder. Returns an errno.
    virtual int RemoveFolder(const std::string &path) = 0;

    // How many bytes this user may still write to the file system of the folder; the negated errno
    // when that cannot be found out.
    virtual std::int64_t FreeBytes(const std::string &folder) = 0;

    // Nanoseconds of the clock by which files are stamped, since 1970, UTC.
    virtual std::int64_t StampClockNs() = 0;

    // Whether it pays to say which files come (Expect): another processor can fetch them, or they
    // come slowly: an open or a read has had to wait for a disk or a network since ExpectNothing,
    // and they do not come as fast as from memory again.
    virtual bool PaysToExpect() { return false; }

    // Says which files will be opened and read next, in this order, after those said before: they
    // are fetched meanwhile. It changes nothing but the time that the other operations take.
    virtual void Expect(const std::vector<std::string> & /*paths*/, const WantedBytes & /*wanted*/)
    {
    }

    // None of them will be opened any more. Waits for nothing.
    virtual void ExpectNothing() {}
};

// The files of this machine.
Files &SystemFiles();

} // namespace platform
