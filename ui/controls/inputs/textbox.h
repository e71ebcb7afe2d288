// ui/controls/inputs/textbox.h - a text that the user edits, on one line or on several.
#pragma once

#include "runtime/utf8.h"
#include "ui/controls/area.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ui
{

// A part of a text: zero-based, in characters; a CR LF counts as two.
struct TextRange {
    int start = 0;
    int length = 0;

    bool operator==(const TextRange &) const = default;
};

class TextBox : public Area
{
public:
    using Area::Area;

    // UTF-8, without marks. Line breaks stay as they were set; those that the user types are CR LF.
    // A change raises `textChanged`, whether the user or the program made it. A text set by the
    // program puts the caret at its beginning.
    const std::string &Text() const { return m_text; }
    void SetText(std::string_view text) { Replace(text, {}); }

    // For the window: sets the text that the user has typed, and the caret.
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

    // The selected text; with length 0, the caret. SetSelection limits it to the text.
    TextRange Selection() const { return m_selection; }
    void SetSelection(TextRange range) { Assign(m_selection, Within(range)); }
    void SelectAll() { SetSelection({0, Length()}); }

    // The number of characters of the text.
    int Length() const { return static_cast<int>(runtime::CountCharacters(m_text)); }

    bool multiLine = false; // set before the window is built
    bool wrap = true;       // with several lines: long lines are wrapped
    int columns = 0;        // the least width of a line, in average characters; 0 for the usual one

    // The text can be selected but not changed.
    bool Locked() const { return m_locked; }
    void SetLocked(bool locked) { Assign(m_locked, locked); }

    std::function<void()> textChanged; // the Change event
    std::function<void()> lostFocus;   // the focus has moved to another control
    // The KeyPress event, for keys that type a character (also 8 backspace, 13 enter). Returns true
    // when the key was handled and the box must not get it.
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
};

} // namespace ui
