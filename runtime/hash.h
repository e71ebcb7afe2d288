// runtime/hash.h - a number for a sequence of bytes that is the same in every run and version.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace runtime
{

// 128 bits for a sequence of bytes, the same on every machine of one byte order.
struct Hash128 {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    bool operator==(const Hash128 &) const = default;
};

// The XXH3 hash of `bytes`: different bytes give different numbers, unless someone has looked for
// a collision. It takes a fraction of a nanosecond for each byte.
// Source: xxHash 0.8, XXH3_128bits without a seed.
[[nodiscard]] Hash128 Hash128Of(std::string_view bytes);
// The same for the bytes of all pieces, one after the other.
[[nodiscard]] Hash128 Hash128Of(std::initializer_list<std::string_view> pieces);

// The 64-bit FNV-1a hash of `bytes`: equal bytes give equal numbers, different bytes almost always
// different ones. It does not protect against someone who looks for a collision.
// Source: draft-eastlake-fnv, offset basis and prime for 64 bits.
constexpr std::uint64_t StableHashOf(std::string_view bytes)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : bytes)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return hash;
}

} // namespace runtime
