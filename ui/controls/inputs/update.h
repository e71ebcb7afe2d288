// ui/controls/inputs/update.h - a scope in which a list or a tree is changed as a whole.
#pragma once

namespace ui
{

// While one exists, the control is between BeginUpdate and EndUpdate.
template <class Control>
class Update
{
public:
    explicit Update(Control &control) : m_control(control) { m_control.BeginUpdate(); }
    ~Update() { m_control.EndUpdate(); }
    Update(const Update &) = delete;
    Update &operator=(const Update &) = delete;

private:
    Control &m_control;
};

} // namespace ui
