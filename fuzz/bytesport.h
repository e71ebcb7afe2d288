// fuzz/bytesport.h - the bytes of a song in memory, for procedures that read tags by their frames.
#pragma once

#include "fuzz/expect.h"
#include "metadata/unicode/tagwalk.h"

#include <cstdint>
#include <string_view>

namespace fuzz
{

// Expects that no position or count is negative.
class BytesPort : public metadata::unicode::FileBytesPort
{
public:
    // `bytes` must exist as long as this object.
    explicit BytesPort(std::string_view bytes) : m_bytes(bytes) {}
    std::int64_t Length() override { return static_cast<std::int64_t>(m_bytes.size()); }
    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        Expect(position >= 0 && count >= 0);
        if (position >= Length())
            return {};
        return m_bytes.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(count));
    }

private:
    std::string_view m_bytes;
};

} // namespace fuzz
