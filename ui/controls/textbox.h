// ui/controls/textbox.h - a text that the user edits, on one line or on several.
#pragma once

#include "ui/controls/area.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ui
{

// Where in a text: positions count characters from 0, and a CR with its LF is two of them.
struct TextRange {
    int start = 0;
    int length = 0;

    bool operator==(const TextRange &) const = default;
};

class TextBox : public Area
{
public:
    using Area::Area;

    // UTF-8, without marks, line breaks as they were set; what the user adds to a text of several
    // lines breaks them with CR LF. Raises `textChanged` when it differs, whoever changed it. A
    // text set by logic puts the caret at its beginning.
    const std::string &Text() const { return m_text; }
    void SetText(std::string_view text) { Replace(text, {}); }

    // The window's: the text as the user changed it, and where the caret then is.
    void Replace(std::string_view text, TextRange selection)
    {
        if (text == m_text)
            return;
        m_text = text;
        m_selection = selection;
        Notify(changed);
        if (textChanged)
            textChanged();
    }

    // The selected text; of length 0 the caret. SetSelection holds it within the text.
    TextRange Selection() const { return m_selection; }
    void SetSelection(TextRange range) { Assign(m_selection, Within(range)); }
    void SelectAll() { SetSelection({0, Length()}); }

    // The number of characters of the text.
    int Length() const
    {
        int count = 0;
        for (const char c : m_text)
            count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
        return count;
    }

    bool multiLine = false; // set before the window is built
    bool wrap = true;       // of several lines: break those that are too long

    // Shows its text and lets it be selected, but not changed.
    bool Locked() const { return m_locked; }
    void SetLocked(bool locked) { Assign(m_locked, locked); }

    // Takes no more than that many characters from the user; 0 for any number.
    int MaxLength() const { return m_maxLength; }
    void SetMaxLength(int characters) { Assign(m_maxLength, characters); }

    std::function<void()> textChanged; // the Change event of logic
    std::function<void()> lostFocus;   // the keyboard went elsewhere
    // The KeyPress event of logic, for keys that type a character (also 8 backspace, 13 enter):
    // true when logic took the key.
    std::function<bool(char32_t)> keyPressed;

private:
    TextRange Within(TextRange range) const
    {
        const int length = Length();
        range.start = range.start < 0 ? 0 : range.start > length ? length : range.start;
        const int room = length - range.start;
        range.length = range.length < 0 ? 0 : range.length > room ? room : range.length;
        return range;
    }

    std::string m_text;
    TextRange m_selection;
    bool m_locked = false;
    int m_maxLength = 0;
};

} // namespace ui
