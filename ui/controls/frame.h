// ui/controls/frame.h - a border with a caption around other controls, or, without either, a plain
// holder of them.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class Frame : public Label
{
public:
    using Label::Label;

    bool bordered = true; // false: neither border nor caption shows; set before the window is built
};

} // namespace ui
