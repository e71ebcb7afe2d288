// ui/controls/checkbox.h - a box with a caption that is checked or not.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class CheckBox : public Label
{
public:
    using Label::Label;

    bool Checked() const { return m_checked; }
    void SetChecked(bool checked) { Assign(m_checked, checked); }

private:
    bool m_checked = false;
};

} // namespace ui
