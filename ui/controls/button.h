// ui/controls/button.h - a button with a caption or a picture.
#pragma once

#include "ui/controls/label.h"

namespace ui
{

class Button : public Label
{
public:
    using Label::Label;

    // The key of a picture that the button shows instead of its caption; empty for none. The
    // caption can still be read by the program; a screen reader speaks SpokenName(), or the tool
    // tip when that is empty.
    const std::string &Image() const { return m_image; }
    void SetImage(std::string_view key) { Assign(m_image, std::string(key)); }

    // Runs the event, unless the button is disabled. The window and tests call it.
    void Click() const
    {
        if (Enabled() && onClick)
            onClick();
    }

    // --- How the button looks; set before the window is made.
    bool isLink = false; // like a link
    bool isFlat = false; // only as large as its text, with a border only under the mouse

    std::function<void()> onClick; // the Click event

private:
    std::string m_image;
};

} // namespace ui
