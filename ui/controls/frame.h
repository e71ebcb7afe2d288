// ui/controls/frame.h - a control that contains others, with or without a border and a caption.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class Frame : public Label
{
public:
    using Label::Label;

    // --- Set before the window is built.
    // When false, neither border nor caption is shown.
    bool bordered = true;
    // It has one control inside, a frame without a border, which is as wide as this one and scrolls
    // up and down when it is higher. No border or caption is shown.
    bool scrolls = false;
};

} // namespace ui
