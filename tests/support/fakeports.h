// tests/support/fakeports.h - a clock and drives that a test sets. While one exists, it is the port
// in TheMachine().
#pragma once

#include "platform/clock.h"
#include "platform/disk/drives.h"
#include "platform/machine.h"

#include <string>
#include <vector>

namespace tests
{

// The time is 5 March 2026, 07:08:09; only Sleep and the test advance the steady time.
class FakeClock : public platform::Clock
{
public:
    FakeClock() : m_before(platform::TheMachine().clock) { platform::TheMachine().clock = this; }
    ~FakeClock() override { platform::TheMachine().clock = m_before; }
    FakeClock(const FakeClock &) = delete;
    FakeClock &operator=(const FakeClock &) = delete;

    std::int64_t SteadyMs() override { return steadyMs; }
    platform::LocalTime Now() override { return now; }
    double SecondsOfDay() override { return now.hour * 3600.0 + now.minute * 60.0 + now.second; }
    std::string DateText(const platform::LocalTime &time) override
    {
        return std::to_string(time.day) + "." + std::to_string(time.month) + "." +
               std::to_string(time.year);
    }
    std::string TimeText(const platform::LocalTime &time) override
    {
        return std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" +
               std::to_string(time.second);
    }
    void Sleep(std::int64_t milliseconds) override { steadyMs += milliseconds; }

    std::int64_t steadyMs = 0;
    platform::LocalTime now{2026, 3, 5, 7, 8, 9};

private:
    platform::Clock *m_before;
};

// One drive, "/", for all paths; `roots` are the drives that are listed.
class FakeDrives : public platform::Drives
{
public:
    FakeDrives() : m_before(platform::TheMachine().drives) { platform::TheMachine().drives = this; }
    ~FakeDrives() override { platform::TheMachine().drives = m_before; }
    FakeDrives(const FakeDrives &) = delete;
    FakeDrives &operator=(const FakeDrives &) = delete;

    std::string DriveOf(const std::string & /*path*/) override { return "/"; }
    platform::DriveType TypeOf(const std::string & /*drive*/) override { return type; }
    std::string LabelOf(const std::string & /*drive*/) override { return label; }
    std::string SerialOf(const std::string & /*drive*/) override { return {}; }
    std::vector<std::string> Roots() override { return roots; }

    platform::DriveType type = platform::DriveType::Fixed;
    std::string label = "LABEL";
    std::vector<std::string> roots{"/"};

private:
    platform::Drives *m_before;
};

} // namespace tests
