// ui/controls/inputs/checkbox.h - a box with a caption that can be checked, and the round box of
// which only one can be.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class CheckBox : public Label
{
public:
    using Label::Label;

    // A change raises `onClick`, whether the user or the program made it.
    bool Checked() const { return m_checked; }
    void SetChecked(bool checked)
    {
        if (checked == m_checked)
            return;
        m_checked = checked;
        Notify(changed);
        if (onClick)
            onClick();
    }

    std::function<void()> onClick; // the Click event

private:
    bool m_checked = false;
};

// One of several in the same frame. When one is checked, the window unchecks the others.
class Option : public CheckBox
{
public:
    using CheckBox::CheckBox;
};

} // namespace ui
