// tests/metadata/unicode/tagbytes.h - the bytes of ID3v2 tags of all versions, put together from
// parts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tests
{

inline std::string BigEndian(std::uint32_t value, int bytes, unsigned bitsPerByte = 8)
{
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        const std::uint32_t mask = (1U << bitsPerByte) - 1;
        text += static_cast<char>(value >> (static_cast<unsigned>(i) * bitsPerByte) & mask);
    }
    return text;
}

// A frame of version 2.2: three characters of name, three of size.
inline std::string Frame22(std::string_view name, std::string_view data)
{
    return std::string(name) + BigEndian(static_cast<std::uint32_t>(data.size()), 3) +
           std::string(data);
}

inline std::string Frame23(std::string_view name, std::string_view data, char formatFlags = 0)
{
    return std::string(name) + BigEndian(static_cast<std::uint32_t>(data.size()), 4) + '\0' +
           formatFlags + std::string(data);
}

inline std::string Frame24(std::string_view name, std::string_view data, char formatFlags = 0)
{
    return std::string(name) + BigEndian(static_cast<std::uint32_t>(data.size()), 4, 7) + '\0' +
           formatFlags + std::string(data);
}

// A text frame of version 2.4 in UTF-8.
inline std::string Text24(std::string_view name, std::string_view text)
{
    return Frame24(name, '\x03' + std::string(text));
}

inline std::string TagOf(int majorVersion, std::string_view body, unsigned flags = 0)
{
    std::string head = "ID3";
    head += static_cast<char>(majorVersion);
    head += '\0';
    head += static_cast<char>(flags);
    head += BigEndian(static_cast<std::uint32_t>(body.size()), 4, 7);
    std::string tag = head + std::string(body);
    if (majorVersion == 4 && (flags & 0x10U) != 0)
        tag += "3DI" + head.substr(3);
    return tag;
}

} // namespace tests
