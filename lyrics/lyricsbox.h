// lyrics/lyricsbox.h - the text box of lyrics: file bytes, one character per byte, with a
// selection. What the user sees of a line break is one place, here it is the two characters it is
// stored as.
#pragma once

#include "ui/controls/area.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace lyrics
{

class LyricsBox : public ui::Area
{
public:
    const std::string &Text() const { return m_text; }

    // Puts another text there, the caret at its start. Raises `textChanged` when it differs.
    void SetText(std::string_view text)
    {
        if (text == m_text)
            return;
        m_text = text;
        m_start = m_length = 0;
        RaiseChange();
    }

    // What an edit by the user does: puts `bytes` in place of `length` characters from `start` on,
    // the caret behind them.
    void Replace(int start, int length, std::string_view bytes)
    {
        const auto from = static_cast<std::size_t>(Clamped(start));
        m_text.replace(from, static_cast<std::size_t>(std::max(length, 0)), bytes);
        m_start = static_cast<int>(from + bytes.size());
        m_length = 0;
        RaiseChange();
    }

    // The selection: zero-based, in characters; the caret is at its start. What is beyond the text
    // is cut off; a negative length selects nothing.
    int SelStart() const { return m_start; }
    int SelLength() const { return m_length; }
    void Select(int start, int length)
    {
        m_start = Clamped(start);
        m_length = std::clamp(length, 0, Size() - m_start);
        ui::Notify(selectionChanged);
    }

    // The user's own selection, which the view shows already.
    void NoteSelection(int start, int length)
    {
        m_start = Clamped(start);
        m_length = std::clamp(length, 0, Size() - m_start);
    }

    std::function<void()> textChanged; // the Change event of logic
    ui::ChangeHook selectionChanged;   // the view's: show the selection and scroll to it

private:
    int Size() const { return static_cast<int>(m_text.size()); }
    int Clamped(int position) const { return std::clamp(position, 0, Size()); }
    void RaiseChange()
    {
        if (textChanged)
            textChanged();
        ui::Notify(changed);
    }

    std::string m_text;
    int m_start = 0, m_length = 0;
};

} // namespace lyrics
