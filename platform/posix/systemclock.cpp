#include "platform/posix/systemclock.h"

#include <locale.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace platform::posix
{

namespace
{

// The name of the locale for times of day.
std::string_view TimeLocaleName()
{
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"})
        if (const char *name = std::getenv(variable); name != nullptr && *name != '\0')
            return name;
    return "C";
}

bool IsNeutral(std::string_view name)
{
    return name == "C" || name == "POSIX" || name.starts_with("C.");
}

// `time` as the C library's struct, with the day of the week.
std::tm CalendarOf(const LocalTime &time)
{
    std::tm calendar{};
    calendar.tm_year = time.year - 1900;
    calendar.tm_mon = time.month - 1;
    calendar.tm_mday = time.day;
    calendar.tm_hour = time.hour;
    calendar.tm_min = time.minute;
    calendar.tm_sec = time.second;
    calendar.tm_isdst = -1;
    std::tm normal = calendar;
    std::mktime(&normal); // fills in the days of the week and the year
    calendar.tm_wday = normal.tm_wday;
    calendar.tm_yday = normal.tm_yday;
    return calendar;
}

} // namespace

SystemClock::SystemClock()
    : m_locale(IsNeutral(TimeLocaleName()) ? nullptr : newlocale(LC_TIME_MASK, "", nullptr))
{
}

SystemClock::~SystemClock()
{
    if (m_locale != nullptr)
        freelocale(static_cast<locale_t>(m_locale));
}

std::int64_t SystemClock::SteadyMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

LocalTime SystemClock::Now()
{
    const std::time_t now = std::time(nullptr);
    std::tm calendar{};
    localtime_r(&now, &calendar);
    return {calendar.tm_year + 1900, calendar.tm_mon + 1, calendar.tm_mday,
            calendar.tm_hour,        calendar.tm_min,     calendar.tm_sec};
}

double SystemClock::SecondsOfDay()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::tm calendar{};
    localtime_r(&now.tv_sec, &calendar);
    return calendar.tm_hour * 3600.0 + calendar.tm_min * 60.0 + calendar.tm_sec +
           static_cast<double>(now.tv_nsec) / 1e9;
}

std::string SystemClock::Format(const LocalTime &time, const char *form, const char *neutralForm)
{
    const std::tm calendar = CalendarOf(time);
    char text[128];
    const std::size_t length =
        m_locale != nullptr
            ? strftime_l(text, sizeof text, form, &calendar, static_cast<locale_t>(m_locale))
            : std::strftime(text, sizeof text, neutralForm, &calendar);
    return {text, length};
}

std::string SystemClock::DateText(const LocalTime &time)
{
    return Format(time, "%x", "%Y-%m-%d");
}

std::string SystemClock::TimeText(const LocalTime &time)
{
    return Format(time, "%X", "%H:%M:%S");
}

void SystemClock::Sleep(std::int64_t milliseconds)
{
    milliseconds = std::max<std::int64_t>(milliseconds, 0);
    timespec rest{static_cast<std::time_t>(milliseconds / 1000),
                  static_cast<long>(milliseconds % 1000 * 1'000'000)};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

} // namespace platform::posix
