// ui/controls/hook.h - how a control notifies the widget that shows it.
#pragma once

#include <functional>

namespace ui
{

// One listener at the most: the widget bound to the control. Empty when no widget shows the
// control.
using ChangeHook = std::function<void()>;

inline void Notify(const ChangeHook &hook)
{
    if (hook)
        hook();
}

} // namespace ui
