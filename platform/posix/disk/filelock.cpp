#include "platform/disk/filelock.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace platform
{

namespace
{

// A lock of the open file description on its first byte: unlike a lock of the process it is not
// lost when another descriptor of the file is closed.
struct flock FirstByte(short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_len = 1;
    return lock;
}

} // namespace

FileLock::FileLock(std::string path) : m_path(std::move(path)) {}

FileLock::~FileLock()
{
    if (m_file >= 0)
        close(m_file);
}

bool FileLock::Open()
{
    if (m_file < 0 && !m_failed) {
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        m_failed = m_file < 0;
    }
    return m_file >= 0;
}

bool FileLock::IsLockedByAnother() const
{
    struct flock lock = FirstByte(F_WRLCK);
    return fcntl(m_file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool FileLock::TryLock()
{
    struct flock lock = FirstByte(F_WRLCK);
    return fcntl(m_file, F_OFD_SETLK, &lock) == 0;
}

void FileLock::Unlock()
{
    if (m_file < 0)
        return;
    struct flock lock = FirstByte(F_UNLCK);
    fcntl(m_file, F_OFD_SETLK, &lock);
}

} // namespace platform
