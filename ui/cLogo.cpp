#include "ui/cLogo.h"

#include "ui/twips.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ui
{

namespace
{

constexpr Colour kSystemColour = 0x80000000;
constexpr int kButtonFace = 15;

std::array<int, 3> Parts(Colour colour)
{
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

// The colour between two colours; `way` is 0 at the first and 1 at the second. Each part is
// rounded, a half to the even number.
Colour Between(const std::array<int, 3> &from, const std::array<int, 3> &to, double way)
{
    Colour colour = 0;
    for (std::size_t part = 0; part < 3; ++part) {
        const double value = from[part] + way * (to[part] - from[part]);
        colour |= static_cast<Colour>(std::lrint(std::clamp(value, 0.0, 255.0))) << (8 * part);
    }
    return colour;
}

} // namespace

Colour cLogo::Resolve(Colour colour) const
{
    if ((colour & kSystemColour) == 0)
        return colour & 0xFFFFFF;
    const int number = static_cast<int>(colour & 0xFF);
    if (systemColour)
        return systemColour(number) & 0xFFFFFF;
    return number == kButtonFace ? 0xF0F0F0 : 0;
}

void cLogo::SetStartColor(Colour colour)
{
    m_start = Resolve(colour);
}

void cLogo::SetEndColor(Colour colour)
{
    m_end = Resolve(colour);
}

StripPlan cLogo::Plan() const
{
    StripPlan plan;
    const int width = widthTwips / kTwipsPerPixel;
    const int height = heightTwips / kTwipsPerPixel;
    const int step = std::max(1, height / 255);
    Colour colour = m_start;
    for (int y = height; y >= 0; y -= step) {
        plan.bands.push_back({y, step, colour});
        const double way = height == 0 ? 0.0 : static_cast<double>(height - y) / height;
        colour = Between(Parts(m_start), Parts(m_end), way);
    }
    const bool icon = hasImageList && IconIndex >= 1;
    if (icon)
        plan.icon = {(width - 16) / 2, height - 18};
    plan.text = {0, height - (icon ? 20 : 2)};
    return plan;
}

void cLogo::Draw() const
{
    if (DrawingObject)
        DrawingObject(Plan());
}

StripPiece PieceForItem(int stripWidthTwips, int itemLeft, int itemTop, int itemHeight)
{
    const int width = stripWidthTwips / kTwipsPerPixel;
    return {0, itemTop, width, itemHeight, itemLeft, itemTop, itemLeft + width + 1};
}

} // namespace ui
