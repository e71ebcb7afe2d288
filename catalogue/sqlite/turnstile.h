// catalogue/sqlite/turnstile.h - a lock file through which processes that wait to write pass one by
// one. Who holds a group of rows tries it before each row, so that a waiter's turn comes in
// milliseconds.
#pragma once

#include <string>

namespace catalogue
{

class Turnstile
{
public:
    // `path`: the lock file; made at the first use and left standing, empty. Where it cannot be
    // made, nobody is ever seen to wait and everybody passes.
    explicit Turnstile(std::string path);
    ~Turnstile();
    Turnstile(const Turnstile &) = delete;
    Turnstile &operator=(const Turnstile &) = delete;

    // Whether another process (or another turnstile of this one) stands in it. One system call.
    [[nodiscard]] bool SomeoneWaits();

    // Steps in, if nobody else stands there. A process that dies steps out.
    [[nodiscard]] bool TryEnter();
    void Leave();

private:
    bool Open();

    std::string m_path;
    int m_file = -1;
    bool m_failed = false;
};

} // namespace catalogue
