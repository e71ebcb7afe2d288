// lyrics/lyricsbox.h - the text box of lyrics: file bytes, one character per byte, with a
// selection. A line break is two characters here, CR and LF, although the user sees it as one.
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

    // Sets another text, with the caret at its start. Calls `textChanged` when it differs.
    void SetText(std::string_view text)
    {
        if (text == m_text)
            return;
        m_text = text;
        m_start = m_length = 0;
        RaiseChange();
    }

    // An edit by the user: replaces `length` characters from `start` on by `bytes` and puts the
    // caret after them.
    void Replace(int start, int length, std::string_view bytes)
    {
        const auto from = static_cast<std::size_t>(Clamped(start));
        m_text.replace(from, static_cast<std::size_t>(std::max(length, 0)), bytes);
        m_start = static_cast<int>(from + bytes.size());
        m_length = 0;
        RaiseChange();
    }

    // The selection: zero-based, in characters; the caret is at its start. It is cut at the end of
    // the text; a negative length selects nothing.
    int SelStart() const { return m_start; }
    int SelLength() const { return m_length; }
    void Select(int start, int length)
    {
        m_start = Clamped(start);
        m_length = std::clamp(length, 0, Size() - m_start);
        ui::Notify(selectionChanged);
    }

    // The user has changed the selection in the view, which shows it already.
    void NoteSelection(int start, int length)
    {
        m_start = Clamped(start);
        m_length = std::clamp(length, 0, Size() - m_start);
    }

    std::function<void()> textChanged; // the Change event of the form
    ui::ChangeHook selectionChanged;   // for the view: show the selection and scroll to it

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
