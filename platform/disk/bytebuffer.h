// platform/disk/bytebuffer.h - memory for bytes that are about to be read into it.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace platform
{

// An allocator whose vector does not initialise the elements that resize() adds.
template <class T>
struct UnfilledMemory : std::allocator<T> {
    template <class U>
    struct rebind {
        using other = UnfilledMemory<U>;
    };

    template <class U>
    void construct(U *at) noexcept
    {
        ::new (static_cast<void *>(at)) U;
    }
    template <class U, class... Arguments>
    void construct(U *at, Arguments &&...arguments)
    {
        ::new (static_cast<void *>(at)) U(std::forward<Arguments>(arguments)...);
    }
};

// Bytes of a file. What resize() adds has no defined value until it is written.
using ByteBuffer = std::vector<char, UnfilledMemory<char>>;

// Makes the buffer at least `count` long; its first `used` bytes are kept. It grows in steps, so
// that a buffer that is used for one file after the other soon has the length that most files need.
inline void MakeRoom(ByteBuffer &buffer, std::size_t used, std::size_t count)
{
    constexpr std::size_t kStep = 16U << 10U;
    if (buffer.size() >= count)
        return;
    if (buffer.capacity() < count) {
        buffer.resize(used);
        buffer.reserve((count + kStep - 1) / kStep * kStep);
    }
    buffer.resize(count);
}

} // namespace platform
