// search/layout.h - computes the layout of the search window in twips. No state, no window.
#pragma once

#include "browser/layout.h"

namespace search
{

inline constexpr int kDesignPaneWidth = 2790;
inline constexpr int kClosedPaneWidth = -30;

// What the window's Height includes above and below its client area, and its Width beside it: with
// these sizes the panes end at the status bar and at the right edge.
inline constexpr int kFrameHeight = 320;
inline constexpr int kFrameWidth = 105;

// All values that the layout reads and writes. Places are relative to the client area; those of
// `closeTreeFrame` and `closeLabel` to `closeTree`.
struct LayoutState : browser::PanelPlaces {
    // Read only.
    bool minimised = false;
    int windowWidth = 0, windowHeight = 0; // outer size, see above
    int scaleWidth = 0;                    // width of the client area
    bool statusBarVisible = true;
    int statusBarHeight = 0;
    bool webStyle = true;
    bool paneShown = true;    // whether `closeTree` is visible
    int storedPaneWidth = -1; // from the settings; negative when there is none

    // Read and written.
    int paneWidth = kDesignPaneWidth;
    int statusBarTop = 0;
    ui::Rect closeTree;      // pctCloseTree; its height is read
    ui::Rect closeTreeFrame; // frmCloseTree
    ui::Rect closeLabel;     // lblCloseTree; its width is read
    ui::Rect options;        // pctOptions
    bool optionsVisible = true;
    ui::Rect optionsWindow; // frmSearchOptions in pctOptions; its height is not changed
    int inputWidth = 0;     // of txtToFind and cmbType
    ui::Rect separator;
    int firstPanelWidth = 0; // of the status bar

    bool operator==(const LayoutState &) const = default;
};

// Computes the places of all children, in `state`. Does nothing for a minimised window.
void PlanLayout(LayoutState &state);

// The width of the pane when the window has this width: the list keeps 5580 twips, even if nothing
// remains for the pane.
[[nodiscard]] int PaneWidthWithin(int paneWidth, int windowWidth);

// The width of the pane when the splitter is dragged. `mouseX`: twips from the splitter's left edge
// to the mouse. The width is not changed when the move is refused: to the left when the pane is
// narrower than 30 % of the window, to the right when it is wider than 70 % of what the panel
// leaves.
[[nodiscard]] int PaneWidthOfDrag(const LayoutState &state, int mouseX);

} // namespace search
