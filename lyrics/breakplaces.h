// lyrics/breakplaces.h - positions in lyrics, where a line break is CR LF, and in a view of them,
// where that pair is one place. A CR or an LF alone is one place in both. Positions count
// characters: of file bytes each one is. The view counts units of UTF-16, two of a character beyond
// U+FFFF.
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

    // The position in the text of a place in the view: before the CR where a break is next, before
    // the character where the place is between its two units.
    [[nodiscard]] int Stored(int place) const;

    // The number of places in the view.
    [[nodiscard]] int ShownSize() const { return m_size + Shift(m_odd.size()); }

private:
    // A CR that has its LF, or a character of two units.
    struct Odd {
        int position = 0; // in the text
        int shift = 0;    // of the view's places against the text's positions after it
    };
    // The shift after the first `count` of them.
    [[nodiscard]] int Shift(std::size_t count) const
    {
        return count == 0 ? 0 : m_odd[count - 1].shift;
    }

    std::vector<Odd> m_odd;
    int m_size = 0; // characters
};

} // namespace lyrics
