// ui/controls/inputs/scrollbar.h - a scroll bar: a value from 0 to Max().
#pragma once

#include "ui/controls/area.h"

#include <algorithm>

namespace ui
{

class ScrollBar : public Area
{
public:
    using Area::Area;

    // The largest Max() that the bar can show: it has 16 bits with a sign.
    static constexpr int kLargestMax = 32767;

    int Value() const { return m_value; }
    int Max() const { return m_max; }
    // The steps for a click beside the thumb, and for a click on an arrow; 0 counts as 1.
    int LargeChange() const { return m_largeChange; }
    int SmallChange() const { return m_smallChange; }

    // The value is limited to 0 to Max(). A change raises `valueChanged`.
    void SetValue(int value)
    {
        const int held = std::clamp(value, 0, m_max);
        if (held == m_value)
            return;
        m_value = held;
        if (valueChanged)
            valueChanged();
        Notify(changed);
    }

    // If the value is greater than the new maximum, it becomes the maximum.
    void SetMax(int max)
    {
        Assign(m_max, std::clamp(max, 0, kLargestMax));
        SetValue(m_value);
    }

    // Sets the value to 0 without an event.
    void ResetValue() { Assign(m_value, 0); }

    void SetLargeChange(int step) { Assign(m_largeChange, step); }
    void SetSmallChange(int step) { Assign(m_smallChange, step); }

    std::function<void()> valueChanged; // the Change event

private:
    int m_value = 0;
    int m_max = 0;
    int m_largeChange = 1;
    int m_smallChange = 1;
};

} // namespace ui
