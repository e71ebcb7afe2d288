// platform/clock.h - time, and waiting for it.
#pragma once

#include <cstdint>
#include <string>

namespace platform
{

// A moment of the local calendar.
struct LocalTime {
    int year = 0, month = 0, day = 0;     // 2026, 1..12, 1..31
    int hour = 0, minute = 0, second = 0; // 0..23, 0..59, 0..60
};

struct Clock {
    virtual ~Clock() = default;

    // Milliseconds of a clock that is never set back; its zero is arbitrary.
    virtual std::int64_t SteadyMs() = 0;

    // Now, by the local calendar.
    virtual LocalTime Now() = 0;

    // Seconds since the local midnight, with their fraction.
    virtual double SecondsOfDay() = 0;

    // The date and the time of day in the user's regional short form ("21.11.2026", "01:04:50").
    virtual std::string DateText(const LocalTime &time) = 0;
    virtual std::string TimeText(const LocalTime &time) = 0;

    // Waits for `milliseconds`; a test's clock only counts them.
    virtual void Sleep(std::int64_t milliseconds) = 0;
};

} // namespace platform
