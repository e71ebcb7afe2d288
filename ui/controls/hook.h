// ui/controls/hook.h - how a control tells the widget that shows it of a change.
#pragma once

#include <functional>

namespace ui
{

// One listener at the most: the widget bound to the control. Empty when nobody shows the control.
using ChangeHook = std::function<void()>;

inline void Notify(const ChangeHook &hook)
{
    if (hook)
        hook();
}

} // namespace ui
