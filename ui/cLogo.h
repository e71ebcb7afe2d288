// ui/cLogo.h - the strip at the side of the popup menu: a vertical gradient with an icon and a
// caption that runs upwards. This plans what to paint; the window paints it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ui
{

// A colour: red + 256 green + 65536 blue; with the top bit set (0x80000000) the number of a colour
// of the desktop.
using Colour = std::uint32_t;

struct StripBand {
    int top = 0, height = 0; // pixels; the band is as wide as the strip
    Colour colour = 0;
};

struct StripPlan {
    std::vector<StripBand> bands; // in the order of painting, from the bottom up
    struct Place {
        int x = 0, y = 0; // pixels
    };
    std::optional<Place> icon; // the top left corner of the icon of 16 pixels, which is transparent
    Place text;                // where the caption begins; it runs upwards
};

class cLogo
{
public:
    std::function<void(const StripPlan &)> DrawingObject; // paints; empty when there is no surface
    int widthTwips = 0, heightTwips = 0;                  // of the surface
    std::string Caption;
    bool hasImageList = false; // whether there are icons for IconIndex
    int IconIndex = 0;         // from 1; 0 for none

    // Each colour is split into red, green and blue when it is set.
    void SetStartColor(Colour colour); // bottom; black at first
    void SetEndColor(Colour colour);   // top; the colour of a button at first
    Colour StartColor() const { return m_start; }
    Colour EndColor() const { return m_end; }

    // Set by the window: returns the colour of the desktop with this number. Number 15 is the face
    // of a button.
    std::function<Colour(int number)> systemColour;

    // Paints the strip, if there is a surface.
    void Draw() const;

    // What Draw paints.
    StripPlan Plan() const;

private:
    Colour Resolve(Colour colour) const;

    Colour m_start = 0;
    Colour m_end = 0xF0F0F0;
};

// The part of the strip beside a menu item that is `itemTop` pixels below the top of the menu: the
// source is cut at (0, itemTop), and the item itself is drawn stripWidth + 1 pixels further right.
struct StripPiece {
    int sourceX = 0, sourceY = 0, width = 0, height = 0; // pixels
    int targetX = 0, targetY = 0;
    int itemLeft = 0; // where the item begins now
};
StripPiece PieceForItem(int stripWidthTwips, int itemLeft, int itemTop, int itemHeight);

} // namespace ui
