// ui/controls/textbox.h - a text that the user edits.
#pragma once

#include "ui/controls/area.h"

#include <string>
#include <string_view>

namespace ui
{

class TextBox : public Area
{
public:
    using Area::Area;

    // UTF-8, without marks. Raises `textChanged` when it differs.
    const std::string &Text() const { return m_text; }
    void SetText(std::string_view text)
    {
        if (text == m_text)
            return;
        m_text = text;
        if (textChanged)
            textChanged();
        Notify(changed);
    }

    std::function<void()> textChanged; // the Change event of logic

private:
    std::string m_text;
};

} // namespace ui
