// platform/posix/disk/descriptor.h - an open file or folder, closed at the end of its life.
#pragma once

#include <unistd.h>

namespace platform::posix
{

class Descriptor
{
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    explicit operator bool() const { return m_fd >= 0; }
    int Get() const { return m_fd; }

private:
    int m_fd; // -1 = none
};

} // namespace platform::posix
