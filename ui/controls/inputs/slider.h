// ui/controls/inputs/slider.h - a slider: the user moves its thumb with the mouse or keys, or
// clicks beside it.
#pragma once

#include "ui/controls/inputs/scrollbar.h"

namespace ui
{

// Value, range and steps: see ScrollBar. While the user drags the thumb, `thumbMoved` is raised;
// the value changes when the user releases it. Without a label a screen reader speaks the tool tip.
class Slider : public ScrollBar
{
public:
    using ScrollBar::ScrollBar;

    std::function<void()> thumbMoved; // the Scroll event
    // The user has released the thumb. Raised before the value changes, and also when it does not
    // change.
    std::function<void()> thumbReleased;

    bool thumbHeld = false; // the user is holding the thumb; set by the window
};

} // namespace ui
