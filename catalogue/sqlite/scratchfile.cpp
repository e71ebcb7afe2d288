#include "catalogue/sqlite/scratchfile.h"

#include "platform/disk/files.h"

namespace catalogue
{

namespace
{

constexpr std::uint64_t kBetweenChecks = 8u << 20; // bytes between checks of the free space

} // namespace

ScratchFile::ScratchFile(const std::string &folder)
    : m_folder(folder), m_file(platform::SystemFiles().CreateScratch(folder))
{
}

ScratchFile::~ScratchFile()
{
    if (m_file >= 0)
        platform::SystemFiles().Close(m_file);
}

bool ScratchFile::HasRoom()
{
    if (m_size != 0 && m_size - m_checkedAt < kBetweenChecks)
        return true;
    m_checkedAt = m_size;
    return platform::SystemFiles().FreeBytes(m_folder) > static_cast<std::int64_t>(kLeftFreeBytes);
}

bool ScratchFile::Append(std::string_view bytes)
{
    if (m_file < 0 || !HasRoom())
        return false;
    while (!bytes.empty()) {
        const std::int64_t written =
            platform::SystemFiles().Write(m_file, bytes.data(), bytes.size());
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
        const std::int64_t got = platform::SystemFiles().ReadAt(
            m_file, static_cast<std::int64_t>(offset + at), bytes.data() + at, count - at, true);
        if (got <= 0)
            return false;
        at += static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace catalogue
