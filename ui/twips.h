// ui/twips.h - twips, the unit of all lengths in windows (1440 to the inch), and the conversion to
// pixels.
#pragma once

#include <cstdint>

namespace ui
{

// 15 twips are one pixel at 96 dpi. Pixels are the toolkit's logical pixels: the scale of the
// screen has no influence.
inline constexpr int kTwipsPerPixel = 15;

constexpr int TwipsOfPixels(int pixels)
{
    return pixels * kTwipsPerPixel;
}

// Rounded to the nearest pixel; a half is rounded away from zero.
constexpr int PixelsOfTwips(int twips)
{
    const int half = twips < 0 ? -(kTwipsPerPixel / 2) : kTwipsPerPixel / 2;
    return (twips + half) / kTwipsPerPixel;
}

// A place within the parent, in twips.
struct Rect {
    int left = 0, top = 0, width = 0, height = 0;

    constexpr int Right() const { return left + width; }
    constexpr int Bottom() const { return top + height; }
    constexpr bool operator==(const Rect &) const = default;
};

} // namespace ui
