// lyrics/breakplaces.h - positions in lyrics, where a line break is CR LF, and in a view of them,
// where that pair is one place. A CR alone and an LF alone are one place in both. Positions count
// characters (each file byte is one). The view counts units of UTF-16: a character beyond U+FFFF
// has two.
#pragma once

#include "metadata/records.h"

#include <string_view>
#include <vector>

namespace lyrics
{

class BreakPlaces
{
public:
    BreakPlaces() = default;
    explicit BreakPlaces(std::string_view text,
                         metadata::TextKind kind = metadata::TextKind::FileBytes);

    // The place in the view of a position in the text. A position between CR and LF has the place
    // before the line break.
    [[nodiscard]] int Shown(int position) const;

    // The position in the text of a place in the view. Before a line break: the position before its
    // CR. Between the two units of a character: the position before that character.
    [[nodiscard]] int Stored(int place) const;

    // The number of places in the view.
    [[nodiscard]] int ShownSize() const { return m_size + Shift(m_odd.size()); }

private:
    // A CR that has its LF, or a character of two units.
    struct Odd {
        int position = 0; // in the text
        int shift = 0;    // what the view's places after it differ by from the text's positions
    };
    // The shift after the first `count` items of m_odd.
    [[nodiscard]] int Shift(std::size_t count) const
    {
        return count == 0 ? 0 : m_odd[count - 1].shift;
    }

    std::vector<Odd> m_odd;
    int m_size = 0; // characters
};

} // namespace lyrics
