// platform/posix/disk/timestamps.h - the times of files as one number.
#pragma once

#include <cstdint>
#include <ctime>

namespace platform::posix
{

// Nanoseconds since 1970, UTC, of a time in seconds and nanoseconds.
inline std::int64_t Nanoseconds(const timespec &time)
{
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace platform::posix
