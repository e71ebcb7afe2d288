// lyrics/lyricsbox.h - the text box of lyrics, of either kind of texts, with a selection. Positions
// count characters: of file bytes each byte is one. A line break counts as the two characters that
// are stored for it, also where the user sees only one place.
#pragma once

#include "metadata/records.h"
#include "runtime/utf8.h"
#include "ui/controls/area.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace lyrics
{

class LyricsBox : public ui::Area
{
public:
    const std::string &Text() const { return m_text; }

    // The kind of the text; to be set before it.
    metadata::TextKind kind = metadata::TextKind::FileBytes;

    // The zero-based offset in the text's bytes of a position, and the position at an offset.
    std::size_t OffsetOf(int position) const
    {
        const auto count = static_cast<std::size_t>(std::max(position, 0));
        if (kind == metadata::TextKind::FileBytes)
            return std::min(count, m_text.size());
        return runtime::LeftCharacters(m_text, count).size();
    }
    int PositionAt(std::size_t offset) const
    {
        return CountIn(std::string_view(m_text).substr(0, offset));
    }

    // Replaces the text and puts the caret at its start. Raises `textChanged` when the text
    // differs.
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
        const int from = Clamped(start);
        const std::size_t offset = OffsetOf(from);
        m_text.replace(offset, OffsetOf(from + std::max(length, 0)) - offset, bytes);
        m_start = from + CountIn(bytes);
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
    int CountIn(std::string_view text) const
    {
        return static_cast<int>(kind == metadata::TextKind::Utf8 ? runtime::CountCharacters(text)
                                                                 : text.size());
    }
    int Size() const { return CountIn(m_text); }
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
