// ui/controls/inputs/combobox.h - a list of texts that opens below the chosen one; the user may
// type a text as well, if `canType`.
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

    // --- Set before the window is built.
    bool canType = false;   // any text may be typed
    bool canNarrow = false; // a layout may make it narrower than its entries

    // The entries, UTF-8, without marks. Setting them does not change the text.
    const std::vector<std::string> &Items() const { return m_items; }
    void SetItems(std::vector<std::string> items)
    {
        m_items = std::move(items);
        m_index = IndexOf(m_text);
        Notify(changed);
    }

    // The zero-based index of the chosen entry; -1 when the text is not an entry. An index out of
    // range chooses none and empties the text. Choosing another entry raises `onClick`, whether the
    // user or the program did it.
    int ListIndex() const { return m_index; }
    void SetListIndex(int index)
    {
        const int chosen = index >= 0 && index < static_cast<int>(m_items.size()) ? index : -1;
        if (chosen == m_index)
            return;
        m_index = chosen;
        m_text = chosen >= 0 ? m_items[static_cast<std::size_t>(chosen)] : std::string();
        Notify(changed);
        if (onClick)
            onClick();
    }

    // The text that is shown; the program may set one that is not an entry. A change raises
    // `textChanged`.
    const std::string &Text() const { return m_text; }
    void SetText(std::string_view text)
    {
        if (text == m_text)
            return;
        m_text = text;
        m_index = IndexOf(m_text);
        Notify(changed);
        if (textChanged)
            textChanged();
    }

    std::function<void()> onClick;     // another entry was chosen
    std::function<void()> textChanged; // another text was typed or set
    // The KeyPress event. Returns true when the key was handled and the box must not get it.
    std::function<bool(char32_t)> keyPressed;

private:
    // The first entry that is equal to the text, byte by byte.
    int IndexOf(std::string_view text) const
    {
        for (std::size_t i = 0; i < m_items.size(); ++i)
            if (m_items[i] == text)
                return static_cast<int>(i);
        return -1;
    }

    std::vector<std::string> m_items;
    int m_index = -1;
    std::string m_text;
};

} // namespace ui
