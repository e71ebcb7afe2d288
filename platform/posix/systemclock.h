// platform/posix/systemclock.h - the machine's own clocks.
#pragma once

#include "platform/clock.h"

namespace platform::posix
{

// Dates and times of day in the form of the user's locale (LC_ALL, LC_TIME, LANG). A locale without
// a regional form of its own (C, POSIX) has 2026-11-21 and 01:04:50.
class SystemClock : public Clock
{
public:
    SystemClock();
    ~SystemClock() override;
    SystemClock(const SystemClock &) = delete;
    SystemClock &operator=(const SystemClock &) = delete;

    std::int64_t SteadyMs() override;
    LocalTime Now() override;
    double SecondsOfDay() override;
    std::string DateText(const LocalTime &time) override;
    std::string TimeText(const LocalTime &time) override;
    void Sleep(std::int64_t milliseconds) override;

private:
    std::string Format(const LocalTime &time, const char *form, const char *neutralForm);

    void *m_locale; // a locale_t; null = no regional form
};

} // namespace platform::posix
