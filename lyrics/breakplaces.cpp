#include "lyrics/breakplaces.h"

#include "runtime/utf8.h"

#include <algorithm>
#include <cstddef>

namespace lyrics
{

BreakPlaces::BreakPlaces(std::string_view text, metadata::TextKind kind)
{
    const bool isUtf8 = kind == metadata::TextKind::Utf8;
    int shift = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isUtf8 && runtime::ContinuesCharacter(text[at]))
            continue;
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '\r' && at + 1 < text.size() && text[at + 1] == '\n')
            m_odd.push_back({m_size, --shift});
        else if (isUtf8 && byte >= 0xF0)
            m_odd.push_back({m_size, ++shift});
        ++m_size;
    }
}

int BreakPlaces::Shown(int position) const
{
    // lower_bound leaves out a pair whose CR is at `position`: the place is before the line break.
    const auto next =
        std::lower_bound(m_odd.begin(), m_odd.end(), position,
                         [](const Odd &odd, int wanted) { return odd.position < wanted; });
    return position + Shift(static_cast<std::size_t>(next - m_odd.begin()));
}

int BreakPlaces::Stored(int place) const
{
    std::size_t before = 0; // how many are before the place
    std::size_t after = m_odd.size();
    while (before < after) {
        const std::size_t middle = (before + after) / 2;
        if (m_odd[middle].position + Shift(middle) < place)
            before = middle + 1;
        else
            after = middle;
    }
    // In a character of two units, the first unit is before the place between them.
    const int position = place - Shift(before);
    return before > 0 ? std::max(position, m_odd[before - 1].position) : position;
}

} // namespace lyrics
