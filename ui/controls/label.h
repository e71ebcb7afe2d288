// ui/controls/label.h - text that logic writes and a window shows.
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

    // With `measureHeight` set the label grows with its text: its height follows caption and width.
    void FitHeight()
    {
        if (measureHeight)
            SetHeight(measureHeight(*this));
    }

    // Its letters in points; 0 for those of the window.
    int FontSize() const { return m_fontSize; }
    void SetFontSize(int points) { Assign(m_fontSize, points); }

    // The Change event of logic; it runs before the widget hears of the caption, and may change it.
    std::function<void()> captionChanged;

    // The height in twips that the caption takes, wrapped at Width(). Set by the window (or a
    // test) for the labels that grow; empty for those of a fixed height.
    std::function<int(const Label &)> measureHeight;

private:
    std::string m_caption;
    int m_fontSize = 0;
};

} // namespace ui
