// platform/disk/files.h - the operations on files that songs are read and rewritten with, one
// system call each where the platform allows. Paths are the file system's bytes. Results are an
// errno (0 = done) or a count; nothing throws.
#pragma once

#include "platform/disk/bytebuffer.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

enum class FileKind { Regular, Folder, Other };

// Which file a path named, and which state of it. Two equal identities mean the same content,
// unless it changed twice within one tick of the file system's clock.
struct FileIdentity {
    std::string path; // as given
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t sizeBytes = 0;
    std::int64_t modifiedNs = 0; // since 1970, UTC
    std::int64_t changedNs = 0;  // of the content or the permissions, since 1970, UTC
    FileKind kind = FileKind::Other;

    bool operator==(const FileIdentity &) const = default;
};

// Whether the last change of a file was so long before `openedAtNs` (StampClockNs) that any later
// change has another time stamp. Time stamps in whole seconds come from clocks with ticks of one or
// two seconds.
[[nodiscard]] inline bool WasSettled(const FileIdentity &file, std::int64_t openedAtNs)
{
    constexpr std::int64_t kSettledNs = 100'000'000; // much longer than a tick of fine clocks
    constexpr std::int64_t kCoarseSettledNs = 3'000'000'000;
    const bool isCoarse = file.changedNs % 1'000'000'000 == 0;
    return openedAtNs - file.changedNs >= (isCoarse ? kCoarseSettledNs : kSettledNs);
}

// What was found in a file's first bytes while they were fetched.
struct Digest {
    virtual ~Digest() = default;
};

// The parts of a file that will be read.
struct WantedBytes {
    std::int64_t first = 0; // this many of its first bytes
    std::int64_t last = 0;  // and this many of its last ones
    // Returns the number of first bytes that are needed in all, from the bytes read so far and the
    // file's length; null: no more than `first`. Called on another thread: it may use only its
    // arguments.
    std::int64_t (*head)(std::string_view start, std::int64_t sizeBytes) = nullptr;
    // Finds what the reader looks for in the first bytes, when all of them have been read; null
    // finds nothing. Called like `head`.
    std::unique_ptr<Digest> (*digest)(std::string_view start, std::int64_t sizeBytes) = nullptr;
};

struct Files {
    virtual ~Files() = default;

    // Opens an existing file for reading; never waits for a device or the other end of a pipe.
    // Returns: a handle, or the negated errno. `identity` is set to the identity of the opened
    // file.
    virtual int OpenToRead(const std::string &path, FileIdentity &identity) = 0;

    // The identity of the file that is at `path` now. Returns an errno.
    virtual int Identify(const std::string &path, FileIdentity &identity) = 0;

    // The same for a file that was opened at that path (OpenToRead). If a rename changes the file's
    // time of change on its file system, only the open file is examined, which is faster; a rename
    // of a folder above it is not noticed then.
    virtual int IdentifyOpen(int /*handle*/, const std::string &path, FileIdentity &identity)
    {
        return Identify(path, identity);
    }

    // Whether the file at `state.path` is in this state. If it was announced (ExpectInState), it
    // may have been examined up to 10 milliseconds ago. False also when it cannot be examined.
    virtual bool IsInState(const FileIdentity &state)
    {
        FileIdentity now;
        return Identify(state.path, now) == 0 && now == state;
    }

    // Whether the file is on a disk of this machine whose file system gives it another time of
    // change at each change of its content: then it has the same content for as long as it is in
    // the same state. `file`: its path, and its device as it was identified. False when this
    // cannot be determined.
    virtual bool HasChangeTimes(const FileIdentity & /*file*/) { return false; }

    // Reads up to `count` bytes from `offset` on into `to`; they may be fewer also before the end
    // of the file. If `mayWait` is false, only bytes that the operating system has in memory are
    // read: -EAGAIN when the first byte is not there, -EOPNOTSUPP when the file system cannot
    // determine whether it is.
    // Returns: the number of bytes read, 0 at the end of the file, or the negated errno.
    virtual std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                                bool mayWait) = 0;

    // If the first bytes of the file have been fetched already (Expect), swaps `bytes` for the
    // buffer with them and sets `digest` to what was found in them. The buffer keeps its place in
    // memory. Each byte is fetched or read only once.
    // Returns: how many bytes at the start of `bytes` are from the file; 0 when none have been
    // fetched.
    virtual std::size_t TakeStart(int /*handle*/, ByteBuffer & /*bytes*/,
                                  std::unique_ptr<Digest> & /*digest*/)
    {
        return 0;
    }

    virtual void Close(int handle) = 0;

    // The path of the file without symbolic links. Returns an errno.
    virtual int RealPath(const std::string &path, std::string &real) = 0;

    // Creates a new file with a unique name in the folder of `finalPath`, readable only by its
    // owner; `temporaryPath` is set to its path. Returns: a handle to write, or the negated errno.
    virtual int CreateBeside(const std::string &finalPath, std::string &temporaryPath) = 0;

    // Creates a file without a name on the disk of `folder`: only this process can use it, and it
    // disappears when it is closed and at the end of the process in any case. Returns: a handle to
    // write and read, or the negated errno.
    virtual int CreateScratch(const std::string &folder) = 0;

    // Opens a file that is only there to be locked (TryLock); created empty, for its owner alone,
    // when it does not exist. Returns: a handle, or the negated errno.
    virtual int OpenLockFile(const std::string &path) = 0;

    // Writes up to `count` bytes at the handle's position. Returns: the count, or the negated
    // errno.
    virtual std::int64_t Write(int handle, const char *from, std::size_t count) = 0;

    // Writes all of `bytes` with it. Returns an errno: EIO when nothing more could be written.
    int WriteAll(int handle, std::string_view bytes)
    {
        while (!bytes.empty()) {
            const std::int64_t written = Write(handle, bytes.data(), bytes.size());
            if (written <= 0)
                return written < 0 ? static_cast<int>(-written) : EIO;
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return 0;
    }

    // Copies up to `count` bytes of `source`, from `offset` on, to the position of `target`,
    // without reading them into the program's memory.
    // Returns: the number of bytes copied, 0 at the end of `source`, or the negated errno: -EXDEV,
    // -EINVAL or -EOPNOTSUPP when these two files cannot be copied like this.
    virtual std::int64_t CopyRange(int source, std::int64_t offset, int target,
                                   std::size_t count) = 0;

    // Gives `target` the owner, the permissions and the extended attributes of `source`. Returns:
    // an errno when one of those that belong to the user cannot be given.
    virtual int CopyPermissions(int source, int target) = 0;

    // Flushes the file's content to the disk. Returns an errno.
    virtual int Flush(int handle) = 0;

    // Flushes the names in the folder of `path` to the disk. Returns an errno.
    virtual int FlushFolderOf(const std::string &path) = 0;

    // Renames the file on the same file system, in one step; a file that has the new name is
    // replaced. Returns an errno.
    virtual int Rename(const std::string &from, const std::string &to) = 0;

    // The same, but never replaces a file: EEXIST when the name is taken.
    virtual int RenameNew(const std::string &from, const std::string &to) = 0;

    // Locks an open file for this handle, without waiting; closing the handle unlocks it. Programs
    // that do not lock the file are not prevented from using it.
    // Returns: EWOULDBLOCK when another handle has locked it, in this process or in another; else
    // 0, also when the file system has no locks.
    virtual int TryLock(int handle) = 0;

    // Removes the name. Returns an errno.
    virtual int Delete(const std::string &path) = 0;

    // Creates a folder in an existing one, open to its owner alone. Returns an errno.
    virtual int MakeFolder(const std::string &path) = 0;

    // Removes an empty folder. Returns an errno.
    virtual int RemoveFolder(const std::string &path) = 0;

    // How many bytes this user may still write to the file system of the folder; the negated errno
    // when that cannot be determined.
    virtual std::int64_t FreeBytes(const std::string &folder) = 0;

    // The time of the clock that sets the time stamps of files: nanoseconds since 1970, UTC.
    virtual std::int64_t StampClockNs() = 0;

    // Whether Expect makes reading faster: because another processor can fetch the files, or
    // because reading is slow. It is slow when an open or a read since ExpectNothing had to wait
    // for a disk or a network, until files come as fast as from memory again.
    virtual bool PaysToExpect() { return false; }

    // Announces the files that will be opened and read next, in this order, after those announced
    // before. They are fetched meanwhile. The only effect is that the other operations take less
    // time.
    virtual void Expect(const std::vector<std::string> & /*paths*/, const WantedBytes & /*wanted*/)
    {
    }

    // The same for files that will be asked about with IsInState, and opened only when they are in
    // another state than this.
    virtual void ExpectInState(const std::vector<FileIdentity> & /*states*/,
                               const WantedBytes & /*wanted*/)
    {
    }

    // Cancels what was announced. Does not wait.
    virtual void ExpectNothing() {}
};

// The files of this machine.
Files &SystemFiles();

} // namespace platform
