// ui/controls/inputs/splitter.h - the bar between two parts of a window, which the user moves to
// the left and to the right. What a move changes is up to the window.
#pragma once

#include "ui/controls/area.h"

#include <functional>

namespace ui
{

class Splitter : public Area
{
public:
    using Area::Area;

    // --- Events. A key that moves the bar raises all three.
    std::function<void()> pressed, released;
    std::function<void(double mouseX)> moved; // twips from the left edge of the bar, with fractions
};

} // namespace ui
