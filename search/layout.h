// search/layout.h - the search window's layout as arithmetic on twips: no state, no window.
#pragma once

#include "ui/twips.h"

namespace search
{

inline constexpr int kDesignPaneWidth = 2790;
inline constexpr int kClosedPaneWidth = -30;

// What the window's Height counts above and below its client area, and its Width beside it: with
// these the panes end at the status bar and at the right edge.
inline constexpr int kFrameHeight = 320;
inline constexpr int kFrameWidth = 105;

// Everything that the layout reads and writes. Places are within the client area; those of `panel`,
// `list` and the scroll bar within `borders`, those of `closeTreeFrame` and `closeLabel` within
// `closeTree`.
struct LayoutState {
    // Read only.
    bool minimised = false;
    int windowWidth = 0, windowHeight = 0; // outer size, see above
    int scaleWidth = 0;                    // width of the client area
    bool statusBarVisible = true;
    int statusBarHeight = 0;
    bool webStyle = true;
    bool paneShown = true;    // visibility of `closeTree`
    int storedPaneWidth = -1; // of the settings; below 0 for none

    // Read and written.
    int paneWidth = kDesignPaneWidth;
    int statusBarTop = 0;
    ui::Rect closeTree;      // pctCloseTree; its height is read
    ui::Rect closeTreeFrame; // frmCloseTree
    ui::Rect closeLabel;     // lblCloseTree; its width is read
    ui::Rect options;        // pctOptions
    bool optionsVisible = true;
    ui::Rect optionsWindow; // frmSearchOptions within pctOptions; its height stays
    int inputWidth = 0;     // of txtToFind and cmbType
    ui::Rect separator, borders;
    ui::Rect panel; // pctWeb; its width is read
    bool panelVisible = true;
    ui::Rect list;
    int scrollHeight = 0, scrollMax = 0, scrollLargeChange = 1, scrollSmallChange = 1; // vsbBack
    int firstPanelWidth = 0; // of the status bar

    bool operator==(const LayoutState &) const = default;
};

// Lays out all children for the state's window, in place. Nothing for a minimised window.
void PlanLayout(LayoutState &state);

// The pane's width in a window that became this wide: the list keeps 5580 twips, whatever is left
// for the pane.
[[nodiscard]] int PaneWidthWithin(int paneWidth, int windowWidth);

// The pane's width for a splitter at `separatorLeft` that is dragged to `mouseX` (twips within the
// splitter): as it is when the move is refused, to the left of a pane of less than 30 % of the
// window, or to the right of one of more than 70 % of what the panel leaves.
[[nodiscard]] int PaneWidthOfDrag(const LayoutState &state, int mouseX);

} // namespace search
