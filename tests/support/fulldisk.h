// tests/support/fulldisk.h - a full disk.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tests
{

// While one exists, no file of this process can become larger than `bytes`.
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
