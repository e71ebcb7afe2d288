// slowreads: preloaded into a program (LD_PRELOAD), delays each read from an MP3 file by 5 ms, as a
// slow disk or a network does. Several reads at a time are delayed at the same time. Other files
// are read as always.
//
//   LD_PRELOAD=libslowreads.so floor_scan DIR

#include <dlfcn.h>
#include <strings.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>

namespace
{

constexpr std::chrono::milliseconds kDelay{5};

void Delay(int handle)
{
    const std::string link = "/proc/self/fd/" + std::to_string(handle);
    std::array<char, 4096> path{};
    const ssize_t length = readlink(link.c_str(), path.data(), path.size() - 1);
    if (length >= 4 && strcasecmp(path.data() + length - 4, ".mp3") == 0)
        std::this_thread::sleep_for(kDelay);
}

// The procedure of that name in the C library.
template <class Procedure>
Procedure *Next(const char *name)
{
    return reinterpret_cast<Procedure *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t pread(int handle, void *to, size_t count, off_t offset)
{
    Delay(handle);
    return Next<decltype(pread)>("pread")(handle, to, count, offset);
}

ssize_t pread64(int handle, void *to, size_t count, off64_t offset)
{
    Delay(handle);
    return Next<decltype(pread64)>("pread64")(handle, to, count, offset);
}

ssize_t preadv2(int handle, const iovec *parts, int count, off_t offset, int flags)
{
    Delay(handle);
    return Next<decltype(preadv2)>("preadv2")(handle, parts, count, offset, flags);
}

ssize_t preadv64v2(int handle, const iovec *parts, int count, off64_t offset, int flags)
{
    Delay(handle);
    return Next<decltype(preadv64v2)>("preadv64v2")(handle, parts, count, offset, flags);
}
}
