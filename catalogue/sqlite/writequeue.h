// catalogue/sqlite/writequeue.h - the queue of the processes that wait to write: a lock file that
// one of them at a time has locked. A process that commits its rows in groups checks it before a
// row, at most once in a millisecond, so that a waiting process gets its turn within milliseconds.
#pragma once

#include <string>

namespace catalogue
{

class WriteQueue
{
public:
    // `path`: the lock file; created at the first use, empty, and never deleted. Where it cannot be
    // created, IsAnotherWaiting is always false and TryEnter always true.
    explicit WriteQueue(std::string path);
    ~WriteQueue();
    WriteQueue(const WriteQueue &) = delete;
    WriteQueue &operator=(const WriteQueue &) = delete;

    // Whether another process (or another object in this process) waits. Takes one system call.
    [[nodiscard]] bool IsAnotherWaiting();

    // Enters the queue's only place. Returns: false when another process is in it. It is free again
    // after Leave, and when the process ends.
    [[nodiscard]] bool TryEnter();
    void Leave();

private:
    bool Open();

    std::string m_path;
    int m_file = -1;
    bool m_failed = false;
};

} // namespace catalogue
