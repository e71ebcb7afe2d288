// ui/controls/label.h - a line of text that logic writes and a window shows.
#pragma once

#include "ui/controls/hook.h"

#include <string>
#include <string_view>

namespace ui
{

class Label
{
public:
    // The text, UTF-8, with the system's own marks ("&&" for an ampersand).
    const std::string &Caption() const { return m_caption; }
    void SetCaption(std::string_view caption)
    {
        m_caption = caption;
        Notify(changed);
    }

    bool Visible() const { return m_visible; }
    void SetVisible(bool visible)
    {
        m_visible = visible;
        Notify(changed);
    }

    ChangeHook changed;

private:
    std::string m_caption;
    bool m_visible = true;
};

} // namespace ui
