// ui/controls/hook.h - how a control notifies the widget that shows it.
#pragma once

#include <functional>

namespace ui
{

// Called by a control when it changes; the widget that shows the control sets it. Empty when there
// is no widget.
using ChangeHook = std::function<void()>;

inline void Notify(const ChangeHook &hook)
{
    if (hook)
        hook();
}

} // namespace ui
