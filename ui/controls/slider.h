// ui/controls/slider.h - a value on a line, which the user moves by its thumb, a click or a key.
#pragma once

#include "ui/controls/scrollbar.h"

namespace ui
{

// Value, range and steps as of a scroll bar. While the user moves the thumb the window calls
// `thumbMoved`; the value changes when the thumb is let go. A screen reader speaks its tool tip
// where no label names it.
class Slider : public ScrollBar
{
public:
    using ScrollBar::ScrollBar;

    std::function<void()> thumbMoved; // the Scroll event of logic
    // The user has let the thumb go. Called before the value changes, and where it stays the same.
    std::function<void()> thumbReleased;

    bool thumbHeld = false; // the user holds the thumb; written by the window
};

} // namespace ui
