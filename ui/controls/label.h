// ui/controls/label.h - a text of the program that a window shows.
#pragma once

#include "ui/controls/area.h"

#include <string>
#include <string_view>

namespace ui
{

// The caption that shows `text` as it is: each "&" is doubled.
inline std::string CaptionOf(std::string_view text)
{
    std::string caption;
    caption.reserve(text.size());
    for (const char c : text)
        caption.append(c == '&' ? 2 : 1, c);
    return caption;
}

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

    // --- How the text is shown; set before the window is made. By default it wraps at the width of
    // the label.
    bool elided = false;  // one line; a text that is too long is cut in its middle, as paths are
    bool oneLine = false; // does not wrap
    // Not 0: the text wraps after this number of characters of average width, and the label is as
    // large as its text, up to two thirds of the screen; a larger text scrolls. The user can select
    // it.
    int columns = 0;
    enum class Align { Top, Middle, TopRight } align = Align::Top;
    bool bold = false;
    bool onDark = false;       // white letters, in front of a dark picture
    bool paintsAtOnce = false; // shows a change also when the program lets no events run

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
