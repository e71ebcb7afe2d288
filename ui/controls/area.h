// ui/controls/area.h - what every visible control has: a place, and whether it shows and answers.
#pragma once

#include "ui/controls/hook.h"
#include "ui/twips.h"

namespace ui
{

class Area
{
public:
    Area() = default;
    explicit Area(Rect place, bool visible = true) : m_place(place), m_visible(visible) {}

    // The place within the parent control, in twips.
    const Rect &Place() const { return m_place; }
    int Left() const { return m_place.left; }
    int Top() const { return m_place.top; }
    int Width() const { return m_place.width; }
    int Height() const { return m_place.height; }
    void SetPlace(Rect place) { Assign(m_place, place); }
    void SetLeft(int left) { SetPlace({left, Top(), Width(), Height()}); }
    void SetTop(int top) { SetPlace({Left(), top, Width(), Height()}); }
    void SetWidth(int width) { SetPlace({Left(), Top(), width, Height()}); }
    void SetHeight(int height) { SetPlace({Left(), Top(), Width(), height}); }

    bool Visible() const { return m_visible; }
    void SetVisible(bool visible) { Assign(m_visible, visible); }

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled) { Assign(m_enabled, enabled); }

    ChangeHook changed; // the widget's; called only when something differs

protected:
    template <class T>
    void Assign(T &field, const T &value)
    {
        if (field == value)
            return;
        field = value;
        Notify(changed);
    }

private:
    Rect m_place;
    bool m_visible = true;
    bool m_enabled = true;
};

} // namespace ui
