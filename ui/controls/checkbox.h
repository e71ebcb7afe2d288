// ui/controls/checkbox.h - a box with a caption that is checked or not, and its round kin.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class CheckBox : public Label
{
public:
    using Label::Label;

    // Raises `onClick` when it differs, whoever changed it.
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

    std::function<void()> onClick; // the Click event of logic

private:
    bool m_checked = false;
};

// One of several in the same frame; checking one unchecks the others there (the window does).
class Option : public CheckBox
{
public:
    using CheckBox::CheckBox;
};

} // namespace ui
