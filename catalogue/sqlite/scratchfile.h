// catalogue/sqlite/scratchfile.h - a file without a name: bytes that need not be in memory. It is
// the user's alone, and gone with the process in any case.
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
    // Makes one on the disk of `folder`. Where that cannot be, every call below reports false.
    explicit ScratchFile(const std::string &folder);
    ~ScratchFile();
    ScratchFile(const ScratchFile &) = delete;
    ScratchFile &operator=(const ScratchFile &) = delete;

    // Writes behind what was written before. Returns: whether all of it is there; a disk with less
    // than kLeftFreeBytes of room takes no more.
    [[nodiscard]] bool Append(std::string_view bytes);
    [[nodiscard]] std::uint64_t Size() const { return m_size; }

    // `count` bytes from `offset` on. Returns: whether all of them were read.
    [[nodiscard]] bool Read(std::uint64_t offset, std::size_t count, std::string &bytes) const;

    static constexpr std::uint64_t kLeftFreeBytes = 256u << 20;

private:
    [[nodiscard]] bool HasRoom();

    int m_file;
    std::uint64_t m_size = 0;
    std::uint64_t m_checkedAt = 0; // the size when the room was looked at
};

} // namespace catalogue
