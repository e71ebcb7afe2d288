// browser/layout.h - the main window's layout as arithmetic on twips: no state, no window.
#pragma once

#include "ui/twips.h"

#include <cstdint>

namespace browser
{

inline constexpr int kDefaultTVWidth = 3000;
inline constexpr int kSeparatorPixels = 3;
inline constexpr int kPlayingPanelWidth = 5000;
inline constexpr int kPlayingStatusPanelWidth = 1500;

// The window's Height counts what is above and below its client area (caption, menu bar,
// border), its Width the border. A toolkit that knows no such sizes reports the client area's size
// plus these, so that the layout's margins come out flush: with an address bar of
// kDesignAddressHeight, tree and list end at the status bar and at the right edge.
inline constexpr int kFrameHeight = 690;
inline constexpr int kFrameWidth = 150;
inline constexpr int kDesignAddressHeight = 510;

// Everything that the layout reads and writes. Places are within the window's client area below
// the menu bar; `pctWeb`, `list` and the scroll bar's within `pctBorders`.
struct LayoutState {
    // Read only.
    bool minimised = false;
    int windowWidth = 0, windowHeight = 0; // outer size, see above
    int scaleWidth = 0;                    // width of the client area
    bool toolbarVisible = true;
    int toolbarHeight = 0;
    bool addressVisible = true;
    int statusBarHeight = 0;
    int aboutTextWidth = 0;  // of the panel `About`, in the form's font
    int addressTextLeft = 0; // left of `WEPath` within the address bar
    bool webStyleOn = true;

    // Read and written.
    int initialTVWidth = kDefaultTVWidth;
    ui::Rect address; // TBAddress; only its height is read
    int addressTextWidth = 0;
    ui::Rect tree; // TV; its old top counts
    ui::Rect separator;
    ui::Rect borders; // pctBorders
    ui::Rect panel;   // pctWeb
    bool panelVisible = true;
    ui::Rect list; // LV; its old left counts
    int scrollHeight = 0, scrollMax = 0, scrollLargeChange = 1, scrollSmallChange = 1; // vsbBack
    int playingWidth = 0, playingStatusWidth = 0, blankWidth = 0, aboutWidth = 0;

    bool operator==(const LayoutState &) const = default;
};

// How a layout ended: Skipped for a minimised window; Failed when a size was impossible also with
// the last safe tree width, and the rest of the steps were left out. Only a Complete one is saved.
enum class LayoutEnd { Skipped, Failed, Complete };

// Lays out all children for the state's window, in place. `lastSafeTVWidth` takes the tree width's
// place when a size is impossible (a negative width or height); the failing statement then runs
// once more, while what was laid out before stays.
LayoutEnd PlanLayout(LayoutState &state, int lastSafeTVWidth);

// The tree's width for a splitter dragged to `mouseX` (twips within the splitter, any fraction).
int TreeWidthOfDrag(int separatorLeft, double mouseX, int separatorWidth, int scaleWidth);

// The scroll bar's range for a panel beside a list: the difference of their heights, at most 32767.
int ScrollMax(int panelHeight, int listHeight);

// The place of the progress bar over the panel that starts at `panelLeft` within the status bar.
ui::Rect ProgressBarPlace(ui::Rect statusBar, int panelLeft, int panelWidth, int margin);

} // namespace browser
