// ui/twips.h - the unit of all window lengths, 1440 to the inch, and its one conversion to pixels.
#pragma once

#include <cstdint>

namespace ui
{

// 15 twips to the pixel at 96 dpi. Pixels are the toolkit's logical ones, so that a scaled screen
// changes nothing here.
inline constexpr int kTwipsPerPixel = 15;

constexpr int TwipsOfPixels(int pixels)
{
    return pixels * kTwipsPerPixel;
}

// Rounded to the nearest pixel, halves away from zero.
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
