// ui/controls/command.h - the state of one menu entry, menu or toolbar button.
#pragma once

#include "ui/controls/hook.h"

#include <string>
#include <string_view>

namespace ui
{

class Command : public Observed
{
public:
    explicit Command(std::string_view commandName, std::string_view caption = {})
        : name(commandName), m_caption(caption)
    {
    }

    const std::string name; // such as "submnuExit" or "mnuFile"

    // UTF-8; "&" marks the access key, the caption "-" is a separator. A toolbar button shows it as
    // its tool tip.
    const std::string &Caption() const { return m_caption; }
    void SetCaption(std::string_view caption) { Assign(m_caption, std::string(caption)); }

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled) { Assign(m_enabled, enabled); }

    bool Checked() const { return m_checked; }
    void SetChecked(bool checked) { Assign(m_checked, checked); }

    bool Visible() const { return m_visible; }
    void SetVisible(bool visible) { Assign(m_visible, visible); }

private:
    std::string m_caption;
    bool m_enabled = true;
    bool m_checked = false;
    bool m_visible = true;
};

} // namespace ui
