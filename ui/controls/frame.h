// ui/controls/frame.h - a control that contains others, with or without a border and a caption.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class Frame : public Label
{
public:
    using Label::Label;

    // When false, neither border nor caption is shown. To be set before the window is built.
    bool bordered = true;
};

} // namespace ui
