// lyrics/breakplaces.h - positions in a text of file bytes, where a line break is CR LF, and in a
// view of it, where that pair is one place. A CR or an LF alone is one place in both.
#pragma once

#include <string_view>
#include <vector>

namespace lyrics
{

class BreakPlaces
{
public:
    BreakPlaces() = default;
    explicit BreakPlaces(std::string_view text);

    // The place in the view of a position in the text; between CR and LF it is that before the
    // break.
    [[nodiscard]] int Shown(int position) const;

    // The position in the text of a place in the view: before the CR where a break is next.
    [[nodiscard]] int Stored(int place) const;

    // The number of places in the view.
    [[nodiscard]] int ShownSize() const { return m_size - static_cast<int>(m_pairs.size()); }

private:
    std::vector<int> m_pairs; // the position of each CR that has its LF
    int m_size = 0;
};

} // namespace lyrics
