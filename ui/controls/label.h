// ui/controls/label.h - a text of the program that a window shows.
#pragma once

#include "ui/controls/area.h"

#include <string>
#include <string_view>

namespace ui
{

class Label : public Area
{
public:
    Label() = default;
    explicit Label(std::string_view caption, Rect place = {}, bool visible = true)
        : Area(place, visible), m_caption(caption)
    {
    }

    // The text, UTF-8, with marks: "&&" is an ampersand, "&" marks an access key.
    const std::string &Caption() const { return m_caption; }
    void SetCaption(std::string_view caption)
    {
        m_caption = caption;
        if (captionChanged)
            captionChanged();
        FitHeight();
        Notify(changed);
    }

    // If `measureHeight` is set, the height of the label follows its caption and width.
    void FitHeight()
    {
        if (measureHeight)
            SetHeight(measureHeight(*this));
    }

    // The size of the letters in points; 0 for the size of the window's font.
    int FontSize() const { return m_fontSize; }
    void SetFontSize(int points) { Assign(m_fontSize, points); }

    // One line, cut in its middle as paths are where its place is too narrow; set before the window
    // is made. Else the text wraps.
    bool elided = false;

    // The Change event; it runs before the widget is updated, and may change the caption.
    std::function<void()> captionChanged;

    // The height in twips of the caption, wrapped at Width(). The window or a test sets it for a
    // label with a variable height; empty for a fixed height.
    std::function<int(const Label &)> measureHeight;

private:
    std::string m_caption;
    int m_fontSize = 0;
};

} // namespace ui
