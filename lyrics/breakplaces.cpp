#include "lyrics/breakplaces.h"

#include <algorithm>

namespace lyrics
{

BreakPlaces::BreakPlaces(std::string_view text) : m_size(static_cast<int>(text.size()))
{
    for (std::size_t at = text.find("\r\n"); at != std::string_view::npos;
         at = text.find("\r\n", at + 2))
        m_pairs.push_back(static_cast<int>(at));
}

int BreakPlaces::Shown(int position) const
{
    // A pair counts as before the position also when the position is between its CR and its LF.
    const auto next = std::lower_bound(m_pairs.begin(), m_pairs.end(), position);
    return position - static_cast<int>(next - m_pairs.begin());
}

int BreakPlaces::Stored(int place) const
{
    int before = 0; // the number of pairs before the place
    int after = static_cast<int>(m_pairs.size());
    while (before < after) {
        const int middle = (before + after) / 2;
        if (m_pairs[static_cast<std::size_t>(middle)] - middle < place)
            before = middle + 1;
        else
            after = middle;
    }
    return place + before;
}

} // namespace lyrics
