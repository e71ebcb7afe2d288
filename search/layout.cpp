#include "search/layout.h"

#include "runtime/numbers.h"

#include <algorithm>

namespace search
{

namespace
{

constexpr int kListWidth = 5580;        // what remains for panel and list in a narrow window
constexpr int kLeastStoredWidth = 1000; // a smaller stored width is ignored
constexpr int kWidthInstead = 3180;

int ReopenedPaneWidth(const LayoutState &s)
{
    const int width =
        s.storedPaneWidth >= 0 ? s.storedPaneWidth : runtime::RoundToInt32(s.windowWidth * 0.35);
    return width < kLeastStoredWidth ? kWidthInstead : width;
}

} // namespace

void PlanLayout(LayoutState &s)
{
    if (s.minimised)
        return;
    s.statusBarTop = s.windowHeight;
    const int height =
        s.statusBarVisible ? s.statusBarTop - (s.statusBarHeight + kFrameHeight) : s.statusBarTop;
    s.panelVisible = s.webStyle;
    if (s.paneWidth <= 0)
        s.paneWidth = ReopenedPaneWidth(s);
    else if (s.paneShown)
        s.closeTree.width = s.paneWidth;
    s.closeTreeFrame.width = s.paneWidth;
    s.closeLabel.left = s.paneWidth - s.closeLabel.width - 160;
    s.options = {0, s.closeTree.height, s.paneWidth, height - s.closeTree.height};
    s.optionsWindow = {0, 0, s.paneWidth, s.optionsWindow.height};
    s.inputWidth = s.paneWidth - 200;
    if (!s.paneShown)
        s.paneWidth = kClosedPaneWidth;
    s.separator = {s.paneWidth, 0, browser::kSeparatorPixels * ui::kTwipsPerPixel, height};
    const int bordersLeft = s.paneWidth + s.separator.width;
    s.borders = {bordersLeft, -10, s.windowWidth - bordersLeft, height + 30};
    if (s.webStyle)
        s.panel = {0, 0, s.panel.width, height - 30};
    const int listLeft = s.webStyle ? s.panel.width - 45 : -45;
    s.list = {listLeft, -45, s.borders.width - listLeft - (s.webStyle ? 105 : 75),
              s.borders.height};
    s.scrollHeight = s.list.height - 75;
    browser::SizeScrollBar(s);
    s.optionsVisible = s.paneShown;
    s.firstPanelWidth = s.scaleWidth;
}

int PaneWidthWithin(int paneWidth, int windowWidth)
{
    return std::min(paneWidth, windowWidth - kListWidth);
}

int PaneWidthOfDrag(const LayoutState &s, int mouseX)
{
    if (mouseX < 0 && s.paneWidth < 0.3 * s.windowWidth)
        return s.paneWidth;
    if (mouseX > 0 && s.paneWidth > 0.7 * (s.windowWidth - s.panel.width))
        return s.paneWidth;
    return browser::TreeWidthOfDrag(s.separator.left, mouseX, s.separator.width, s.scaleWidth);
}

} // namespace search
