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

// What has fields that a widget shows.
class Observed
{
public:
    ChangeHook changed; // for the widget; called only after a real change

protected:
    template <class T>
    void Assign(T &field, const T &value)
    {
        if (field == value)
            return;
        field = value;
        Notify(changed);
    }
};

} // namespace ui
