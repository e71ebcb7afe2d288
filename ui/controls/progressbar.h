// ui/controls/progressbar.h - a progress bar: a value from 0 to a maximum.
#pragma once

#include "ui/controls/area.h"

#include <cstdint>

namespace ui
{

class ProgressBar : public Area
{
public:
    ProgressBar() : Area({}, false) {}

    std::int64_t Value() const { return m_value; }
    void SetValue(std::int64_t value)
    {
        m_value = value;
        Notify(changed);
    }

    std::int64_t Max() const { return m_max; }
    void SetMax(std::int64_t max)
    {
        m_max = max;
        Notify(changed);
    }

private:
    std::int64_t m_value = 0;
    std::int64_t m_max = 0;
};

} // namespace ui
