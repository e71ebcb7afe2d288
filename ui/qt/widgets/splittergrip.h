// ui/qt/widgets/splittergrip.h - a splitter is a few pixels wide: a widget over it and the pixels
// beside it receives the mouse, so that it is easier to grab. No state.
#pragma once

namespace ui::qt
{

inline constexpr int kGripPixels = 3; // the pixels beside the splitter in which it can be grabbed

// The distance from the splitter of a place that is counted from its left edge, in pixels; 0 inside
// it.
inline double GrabbedBeside(double x, int width)
{
    return x < 0 || x >= width ? x : 0;
}

} // namespace ui::qt
