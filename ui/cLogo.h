// ui/cLogo.h - the popup's side strip: a vertical gradient with an icon and a caption that runs up.
// Plans what is painted; the window paints it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ui
{

// A colour value: red + 256 green + 65536 blue; with the top bit set (0x80000000) the number of a
// system colour.
using Colour = std::uint32_t;

struct StripBand {
    int top = 0, height = 0; // pixels; the band is as wide as the strip
    Colour colour = 0;
};

struct StripPlan {
    std::vector<StripBand> bands; // in painting order, from the bottom up
    struct Place {
        int x = 0, y = 0; // pixels
    };
    std::optional<Place> icon; // top left of the 16 pixel icon; transparent
    Place text;                // where the caption starts; it runs up from there, a quarter turn
};

class cLogo
{
public:
    std::function<void(const StripPlan &)> DrawingObject; // paints; empty for no surface
    int widthTwips = 0, heightTwips = 0;                  // of the surface
    std::string Caption;
    bool hasImageList = false; // hImageList
    int IconIndex = 0;         // from 1; 0 for none

    // Each is turned into red, green and blue when it is set.
    void SetStartColor(Colour colour); // bottom; black at first
    void SetEndColor(Colour colour);   // top; the colour of a button until it is set
    Colour StartColor() const { return m_start; }
    Colour EndColor() const { return m_end; }

    // Resolves system colours; the window sets the desktop's. Number 15 is the button face.
    std::function<Colour(int number)> systemColour;

    // Paints. Nothing is painted before it is called, nor without a surface.
    void Draw() const;

    // What Draw paints.
    StripPlan Plan() const;

private:
    Colour Resolve(Colour colour) const;

    Colour m_start = 0;
    Colour m_end = 0xF0F0F0;
};

// The piece of the strip that goes beside a menu item `itemTop` pixels below the menu's top: the
// source is cut at (0, itemTop), and the item's own drawing moves right by stripWidth + 1.
struct StripPiece {
    int sourceX = 0, sourceY = 0, width = 0, height = 0; // pixels
    int targetX = 0, targetY = 0;
    int itemLeft = 0; // the item's new left
};
StripPiece PieceForItem(int stripWidthTwips, int itemLeft, int itemTop, int itemHeight);

} // namespace ui
