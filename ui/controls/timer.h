// ui/controls/timer.h - a timer with an interval; the window system runs it, a test calls Fire.
#pragma once

#include "ui/controls/hook.h"

namespace ui
{

class Timer
{
public:
    explicit Timer(int intervalMs, bool enabled = false)
        : m_interval(intervalMs), m_enabled(enabled)
    {
    }

    int IntervalMs() const { return m_interval; }

    // SetEnabled(true) starts a new interval, also when the timer is enabled already.
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled)
    {
        m_enabled = enabled;
        Notify(changed);
    }

    // One tick: runs the event if the timer is enabled. Called by the window system.
    void Fire()
    {
        if (m_enabled && event)
            event();
    }

    std::function<void()> event; // the Timer event
    ChangeHook changed;          // for the window system: start, restart or stop

private:
    int m_interval;
    bool m_enabled;
};

} // namespace ui
