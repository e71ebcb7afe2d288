// browser/layout.h - computes the layout of the main window in twips, and the parts of it that the
// search window has too. No state, no window.
#pragma once

#include "ui/twips.h"

#include <cstdint>

namespace browser
{

inline constexpr int kDefaultTVWidth = 3000;
inline constexpr int kSeparatorPixels = 3;
inline constexpr int kPlayingPanelWidth = 5000;
inline constexpr int kPlayingStatusPanelWidth = 1500;

// The window's Height includes what is above and below its client area (caption, menu bar, border),
// its Width includes the borders. With a toolkit that does not know these sizes, the window reports
// the size of its client area plus these constants. The margins are then exact: with an address bar
// of kDesignAddressHeight, tree and list end at the status bar and at the right edge.
inline constexpr int kFrameHeight = 690;
inline constexpr int kFrameWidth = 150;
inline constexpr int kDesignAddressHeight = 510;

// The information panel, the list beside it and the panel's scroll bar. The place of `borders` is
// relative to the client area, those of the others to `borders`.
struct PanelPlaces {
    ui::Rect borders; // pctBorders
    ui::Rect panel;   // pctWeb; its width is read
    bool panelVisible = true;
    ui::Rect list; // LV or ListView
    int scrollHeight = 0, scrollMax = 0, scrollLargeChange = 1, scrollSmallChange = 1; // vsbBack

    bool operator==(const PanelPlaces &) const = default;
};

// All values that the layout reads and writes. Places are relative to the client area below the
// menu bar. The former left of `list` is read.
struct LayoutState : PanelPlaces {
    // Read only.
    bool minimised = false;
    int windowWidth = 0, windowHeight = 0; // outer size, see above
    int scaleWidth = 0;                    // width of the client area
    bool toolbarVisible = true;
    int toolbarHeight = 0;
    bool addressVisible = true;
    int statusBarHeight = 0;
    int aboutTextWidth = 0;  // the text of the panel `About` in the form's font
    int addressTextLeft = 0; // the left edge of `WEPath` in the address bar
    bool webStyleOn = true;

    // Read and written.
    int initialTVWidth = kDefaultTVWidth;
    ui::Rect address; // TBAddress; only its height is read
    int addressTextWidth = 0;
    ui::Rect tree; // TV; its former top is read
    ui::Rect separator;
    int playingWidth = 0, playingStatusWidth = 0, blankWidth = 0, aboutWidth = 0;

    bool operator==(const LayoutState &) const = default;
};

// The result of a layout. Skipped: the window is minimised. Failed: a size was negative even with
// the last safe tree width, and the remaining steps were not done. Only a Complete one is saved.
enum class LayoutEnd { Skipped, Failed, Complete };

// Computes the places of all children, in `state`. When a size is negative, the tree gets the width
// `lastSafeTVWidth`, and the statement that failed is repeated; what was computed before it stays.
LayoutEnd PlanLayout(LayoutState &state, int lastSafeTVWidth);

// The width in twips of the part to the left of a splitter that is dragged. `mouseX`: twips from
// the splitter's left edge to the mouse, with fractions; the others are twips.
int TreeWidthOfDrag(int separatorLeft, double mouseX, int separatorWidth, int scaleWidth);

// The range of the scroll bar for a panel beside a list: the difference of their heights in twips,
// from 0 to 32767.
int ScrollMax(int panelHeight, int listHeight);

// Computes the range and the steps of the scroll bar from the heights of panel and list.
void SizeScrollBar(PanelPlaces &places);

// The place of the progress bar over a panel of the status bar, `margin` inside it; `panelLeft` is
// relative to the status bar.
ui::Rect ProgressBarPlace(ui::Rect statusBar, int panelLeft, int panelWidth, int margin);

} // namespace browser
