#include "catalogue/sqlite/scratchfile.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>

namespace catalogue
{

namespace
{

constexpr std::uint64_t kBetweenChecks = 8u << 20; // bytes between checks of the free space

} // namespace

ScratchFile::ScratchFile(const std::string &folder)
    : m_file(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600))
{
}

ScratchFile::~ScratchFile()
{
    if (m_file >= 0)
        close(m_file);
}

bool ScratchFile::HasRoom()
{
    if (m_size != 0 && m_size - m_checkedAt < kBetweenChecks)
        return true;
    m_checkedAt = m_size;
    struct statvfs disk = {};
    return fstatvfs(m_file, &disk) == 0 &&
           static_cast<std::uint64_t>(disk.f_bavail) * disk.f_frsize > kLeftFreeBytes;
}

bool ScratchFile::Append(std::string_view bytes)
{
    if (m_file < 0 || !HasRoom())
        return false;
    while (!bytes.empty()) {
        const auto written = pwrite(m_file, bytes.data(), bytes.size(), static_cast<off_t>(m_size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        m_size += static_cast<std::uint64_t>(written);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool ScratchFile::Read(std::uint64_t offset, std::size_t count, std::string &bytes) const
{
    bytes.resize(count);
    for (std::size_t at = 0; at < count;) {
        const auto got =
            pread(m_file, bytes.data() + at, count - at, static_cast<off_t>(offset + at));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        at += static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace catalogue
