// ui/controls/area.h - what every visible control has: a place, whether it is visible and enabled,
// a tool tip, the keyboard focus.
#pragma once

#include "ui/controls/hook.h"
#include "ui/twips.h"

#include <functional>
#include <string>
#include <string_view>

namespace ui
{

class Area : public Observed
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

    // The width and height that the control needs for its contents in the window's font, in twips,
    // with left and top 0; its Place() where no window shows it.
    Rect NeededSize() const { return measureSize ? measureSize() : m_place; }
    std::function<Rect()> measureSize; // set by the window

    bool Visible() const { return m_visible; }
    void SetVisible(bool visible) { Assign(m_visible, visible); }

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled) { Assign(m_enabled, enabled); }

    // UTF-8, "&" is itself; empty for none.
    const std::string &ToolTip() const { return m_toolTip; }
    void SetToolTip(std::string_view tip) { Assign(m_toolTip, std::string(tip)); }

    // A marked box shows that something is wrong with its text; the tool tip says what.
    bool Marked() const { return m_marked; }
    void SetMarked(bool marked) { Assign(m_marked, marked); }

    // What a screen reader speaks when neither a caption nor a label names the control; empty for
    // none.
    const std::string &SpokenName() const { return m_spoken; }
    void SetSpokenName(std::string_view name) { Assign(m_spoken, std::string(name)); }

    // Gives the keyboard focus to the control, when a window shows it.
    void SetFocus() const { Notify(focusWanted); }

    ChangeHook focusWanted; // for the widget

private:
    Rect m_place;
    bool m_visible = true;
    bool m_enabled = true;
    bool m_marked = false;
    std::string m_toolTip;
    std::string m_spoken;
};

} // namespace ui
