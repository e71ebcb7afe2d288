// catalogue/sqlite/writequeue.h - the queue of the processes that wait to write: a lock file that
// one of them at a time has locked. A process that commits its rows in groups checks it before a
// row, at most once in a millisecond, so that a waiting process gets its turn within milliseconds.
#pragma once

#include "platform/disk/filelock.h"

#include <string>

namespace catalogue
{

class WriteQueue
{
public:
    // `path`: the lock file; created at the first use, empty, and never deleted. Where it cannot be
    // created, IsAnotherWaiting is always false and TryEnter always true.
    explicit WriteQueue(std::string path);

    // Whether another process (or another object in this process) waits. Takes one system call.
    [[nodiscard]] bool IsAnotherWaiting();

    // Enters the queue's only place. Returns: false when another process is in it. It is free again
    // after Leave, and when the process ends.
    [[nodiscard]] bool TryEnter();
    void Leave();

private:
    platform::FileLock m_place;
};

} // namespace catalogue
