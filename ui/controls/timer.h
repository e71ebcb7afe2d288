// ui/controls/timer.h - an interval timer; the window system drives it, a test fires it.
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

    // Enabling starts a full interval anew, also when the timer is enabled already.
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

    std::function<void()> event; // the Timer event of logic
    ChangeHook changed;          // the driver's: start, restart or stop

private:
    int m_interval;
    bool m_enabled;
};

} // namespace ui
