// tests/support/fulldisk.h - a disk without room.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tests
{

// While one lives, no file of this process grows beyond `bytes`.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const struct rlimit small = {bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    struct rlimit m_before = {};
};

} // namespace tests
