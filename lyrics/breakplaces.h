// lyrics/breakplaces.h - converts between positions in a text of file bytes, where a line break is
// CR LF, and places in a view of it, where that pair is one place. A CR or an LF alone is one place
// in both.
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

    // The place in the view of a position in the text. A position between CR and LF has the place
    // before the line break.
    [[nodiscard]] int Shown(int position) const;

    // The position in the text of a place in the view; for the place before a line break, the
    // position of its CR.
    [[nodiscard]] int Stored(int place) const;

    // The number of places that the view has.
    [[nodiscard]] int ShownSize() const { return m_size - static_cast<int>(m_pairs.size()); }

private:
    std::vector<int> m_pairs; // the position of each CR that is followed by an LF
    int m_size = 0;
};

} // namespace lyrics
