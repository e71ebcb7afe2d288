// catalogue/sqlite/scratchfile.h - a temporary file without a name, for bytes that need not be in
// memory. Only the user can read it, and it disappears with the process in any case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace catalogue
{

class ScratchFile
{
public:
    // Creates one on the disk of `folder`. If that fails, all calls below return false.
    explicit ScratchFile(const std::string &folder);
    ~ScratchFile();
    ScratchFile(const ScratchFile &) = delete;
    ScratchFile &operator=(const ScratchFile &) = delete;

    // Appends bytes. Returns: whether all were written; nothing more is written when the disk has
    // less than kLeftFreeBytes of free space.
    [[nodiscard]] bool Append(std::string_view bytes);
    [[nodiscard]] std::uint64_t Size() const { return m_size; }

    // `count` bytes from `offset` on. Returns: whether all of them were read.
    [[nodiscard]] bool Read(std::uint64_t offset, std::size_t count, std::string &bytes) const;

    static constexpr std::uint64_t kLeftFreeBytes = 256u << 20;

private:
    [[nodiscard]] bool HasRoom();

    std::string m_folder;
    int m_file; // negative when it could not be created
    std::uint64_t m_size = 0;
    std::uint64_t m_checkedAt = 0; // the size when the free space was last checked
};

} // namespace catalogue
