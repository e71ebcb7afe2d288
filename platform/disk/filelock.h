// platform/disk/filelock.h - a lock between processes: a file that one object at a time has locked.
#pragma once

#include <string>

namespace platform
{

class FileLock
{
public:
    // `path`: the lock file; created at the first use, empty, and never deleted.
    explicit FileLock(std::string path);
    ~FileLock(); // unlocks
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    // Opens the file, unless it is open; tries so only once. Returns: false when it can neither be
    // opened nor created. Nobody can lock it then.
    bool Open();

    // For a file that is open. Whether another object of this process or of any other has locked
    // it. Takes one system call.
    [[nodiscard]] bool IsLockedByAnother() const;

    // For a file that is open. Locks it. Returns: false when another object has locked it. It is
    // unlocked by Unlock, and when the process ends.
    [[nodiscard]] bool TryLock();
    void Unlock();

private:
    std::string m_path;
    int m_file = -1;
    bool m_failed = false;
};

} // namespace platform
