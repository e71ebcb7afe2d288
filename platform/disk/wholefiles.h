// platform/disk/wholefiles.h - whole small files: read, and written in one step. Paths are bytes.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace platform
{

// The first `maxBytes` bytes of a regular file. Nothing, with errno set, when it cannot be read or
// is something else; a FIFO or device is not waited for (errno EINVAL).
std::optional<std::string> ReadRegularFile(const std::string &path, std::size_t maxBytes);

// Replaces the content of the file by `bytes`, in one step for every reader: a new file is written
// beside it and then renamed. An existing file keeps its mode, a new one gets `mode`; a symbolic
// link is followed, also to a file that does not exist yet. Not flushed. Returns: false, with errno
// set, when that failed; the old file is unchanged then.
bool ReplaceFile(const std::string &path, std::string_view bytes, unsigned mode = 0644);
// The same with the bytes of all pieces, one after the other.
bool ReplaceFile(const std::string &path, std::initializer_list<std::string_view> pieces,
                 unsigned mode = 0644);

// Appends `bytes` to the file, in one write if the operating system takes all of them at once, so
// that they do not mix with what other processes append. A missing file is created, readable only
// by its owner. Not flushed. Returns: false, with errno set, when that failed; anything but a
// regular file (a FIFO, a device) is refused at once (EINVAL, ENXIO).
bool AppendToFile(const std::string &path, std::string_view bytes);

// A file to which many short texts are appended: each is in the file when the call returns, as with
// AppendToFile, but the file is opened only once.
class Appender
{
public:
    // Empties the file. The object converts to false, with errno set, when that failed; other kinds
    // of files are refused as above.
    explicit Appender(std::string path);

    explicit operator bool() const { return m_fd >= 0; }
    ~Appender();
    Appender(const Appender &) = delete;
    Appender &operator=(const Appender &) = delete;

    // A file that was deleted meanwhile is created again. Returns: false, with errno set, when that
    // failed.
    bool Append(std::string_view bytes);

private:
    void Open(int how);

    std::string m_path;
    int m_fd = -1;
};

// Removes the files with temporary names in the folder (of ReplaceFile, and of CreateBeside in
// platform/disk/files.h) that no process can be writing any more: a process that was killed has
// left them, and they have not been written to for a day. May be called on any thread. Errors:
// none; what cannot be removed stays.
void RemoveAbandonedFiles(const std::string &folder);

// Whether this process may read and write the file: 0, or the errno why not (EACCES, EROFS,
// ENOENT).
int CheckAccess(const std::string &path);

// Creates the folder and those above it, accessible only to their owner. Returns: false, with errno
// set, when it does not exist afterwards.
bool MakeFolders(const std::string &path);

} // namespace platform
