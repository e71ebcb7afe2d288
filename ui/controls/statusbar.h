// ui/controls/statusbar.h - a bar of panels, each with a key, a text and a width in twips; usually
// at the lower edge of a window.
#pragma once

#include "runtime/error.h"
#include "ui/controls/area.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ui
{

struct StatusPanel {
    std::string key;
    std::string text; // UTF-8, with marks ("&&" for an ampersand)
    int widthTwips = 0;
    bool autoSize = true; // false while a progress bar covers the panel
};

class StatusBar : public Area
{
public:
    explicit StatusBar(std::vector<StatusPanel> panels, Rect place = {})
        : Area(place), m_panels(std::move(panels))
    {
    }

    // The panel with this key. Errors: kSubscriptOutOfRange when there is none.
    const StatusPanel &Panel(std::string_view key) const
    {
        for (const StatusPanel &panel : m_panels)
            if (panel.key == key)
                return panel;
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    }

    void SetText(std::string_view key, std::string_view text)
    {
        Mutable(key).text = text;
        Notify(changed);
    }

    void SetWidth(std::string_view key, int widthTwips)
    {
        Mutable(key).widthTwips = widthTwips;
        Notify(changed);
    }

    void SetAutoSize(std::string_view key, bool autoSize)
    {
        Mutable(key).autoSize = autoSize;
        Notify(changed);
    }

    const std::vector<StatusPanel> &Panels() const { return m_panels; }

private:
    StatusPanel &Mutable(std::string_view key)
    {
        return const_cast<StatusPanel &>(std::as_const(*this).Panel(key));
    }

    std::vector<StatusPanel> m_panels;
};

} // namespace ui
