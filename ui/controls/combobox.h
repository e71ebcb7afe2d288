// ui/controls/combobox.h - a text that the user types or takes from a list.
#pragma once

#include "ui/controls/area.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ui
{

class ComboBox : public Area
{
public:
    using Area::Area;

    bool canType = false; // any text may be typed; set before the window is built

    // The list's texts, UTF-8, without marks. The text stays as it is.
    const std::vector<std::string> &Items() const { return m_items; }
    void SetItems(std::vector<std::string> items) { Assign(m_items, std::move(items)); }

    // What the box shows, which need not be in the list.
    const std::string &Text() const { return m_text; }
    void SetText(std::string_view text) { Assign(m_text, std::string(text)); }

    // The zero-based place of the text in the list; -1 when it is not there.
    int ListIndex() const
    {
        for (std::size_t i = 0; i < m_items.size(); ++i)
            if (m_items[i] == m_text)
                return static_cast<int>(i);
        return -1;
    }
    void SetListIndex(int index) { SetText(m_items.at(static_cast<std::size_t>(index))); }

private:
    std::vector<std::string> m_items;
    std::string m_text;
};

} // namespace ui
