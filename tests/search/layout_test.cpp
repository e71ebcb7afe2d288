#include "search/layout.h"

#include <gtest/gtest.h>

namespace
{

using search::LayoutState;
using search::PlanLayout;

LayoutState Window(int width, int height)
{
    LayoutState s;
    s.windowWidth = width;
    s.windowHeight = height;
    s.scaleWidth = width - search::kFrameWidth;
    s.statusBarHeight = 345;
    s.closeTree = {0, 0, 2000, 330};
    s.closeTreeFrame = {0, 0, 2000, 330};
    s.closeLabel = {0, 30, 270, 270};
    s.optionsWindow = {5, 5, 100, 3000};
    s.panel = {9, 9, 2775, 500};
    return s;
}

TEST(SearchLayout, NumberByNumber)
{
    LayoutState s = Window(12000, 8000);
    PlanLayout(s);
    const int height = 8000 - (345 + 320);
    EXPECT_EQ(s.statusBarTop, 8000);
    EXPECT_EQ(s.paneWidth, 2790);
    EXPECT_EQ(s.closeTree, (ui::Rect{0, 0, 2790, 330}));
    EXPECT_EQ(s.closeTreeFrame, (ui::Rect{0, 0, 2790, 330}));
    EXPECT_EQ(s.closeLabel, (ui::Rect{2790 - 270 - 160, 30, 270, 270}));
    EXPECT_EQ(s.options, (ui::Rect{0, 330, 2790, height - 330}));
    EXPECT_TRUE(s.optionsVisible);
    EXPECT_EQ(s.optionsWindow, (ui::Rect{0, 0, 2790, 3000}));
    EXPECT_EQ(s.inputWidth, 2590);
    EXPECT_EQ(s.separator, (ui::Rect{2790, 0, 45, height}));
    EXPECT_EQ(s.borders, (ui::Rect{2835, -10, 12000 - 2835, height + 30}));
    EXPECT_EQ(s.panel, (ui::Rect{0, 0, 2775, height - 30}));
    EXPECT_TRUE(s.panelVisible);
    EXPECT_EQ(s.list, (ui::Rect{2730, -45, 12000 - 2835 - 2730 - 105, height + 30}));
    EXPECT_EQ(s.scrollHeight, height + 30 - 75);
    EXPECT_EQ(s.scrollMax, 60); // panel and list differ by that
    EXPECT_EQ(s.scrollLargeChange, 6);
    EXPECT_EQ(s.scrollSmallChange, 1); // 0.6 rounds up
    EXPECT_EQ(s.firstPanelWidth, s.scaleWidth);
}

TEST(SearchLayout, WithoutPanelAndStatusBar)
{
    LayoutState s = Window(12000, 8000);
    s.webStyle = false;
    s.statusBarVisible = false;
    PlanLayout(s);
    EXPECT_FALSE(s.panelVisible);
    EXPECT_EQ(s.panel, (ui::Rect{9, 9, 2775, 500})); // where it was
    EXPECT_EQ(s.separator.height, 8000);
    EXPECT_EQ(s.list, (ui::Rect{-45, -45, 12000 - 2835 + 45 - 75, 8030}));
}

TEST(SearchLayout, AMinimisedWindowKeepsItsLayout)
{
    LayoutState s = Window(12000, 8000);
    s.minimised = true;
    const LayoutState before = s;
    PlanLayout(s);
    EXPECT_EQ(s, before);
}

TEST(SearchLayout, AClosedPaneIsOutsideTheWindow)
{
    LayoutState s = Window(12000, 8000);
    s.paneShown = false;
    PlanLayout(s);
    EXPECT_EQ(s.paneWidth, -30);
    EXPECT_EQ(s.separator.left, -30);
    EXPECT_EQ(s.borders.left, 15);
    EXPECT_FALSE(s.optionsVisible);
    EXPECT_EQ(s.closeTree.width, 2000); // only a shown one follows
}

TEST(SearchLayout, AReopenedPaneTakesTheStoredWidth)
{
    constexpr struct {
        const char *name;
        int stored, want;
    } cases[] = {
        {"none: 35 percent", -1, 4200}, {"stored", 2000, 2000},      {"the least", 1000, 1000},
        {"too small", 999, 3180},       {"nothing at all", 0, 3180},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        for (const int width : {0, -30, -900}) {
            LayoutState s = Window(12000, 8000);
            s.paneWidth = width;
            s.storedPaneWidth = c.stored;
            PlanLayout(s);
            EXPECT_EQ(s.paneWidth, c.want);
            EXPECT_EQ(s.closeTreeFrame.width, c.want);
            EXPECT_EQ(s.closeTree.width, 2000); // at the next layout
        }
    }
    LayoutState narrow = Window(2000, 8000);
    narrow.paneWidth = 0;
    PlanLayout(narrow);
    EXPECT_EQ(narrow.paneWidth, 3180); // 35 percent are 700
}

TEST(SearchLayout, ANarrowWindowShrinksThePane)
{
    EXPECT_EQ(search::PaneWidthWithin(2790, 12000), 2790);
    EXPECT_EQ(search::PaneWidthWithin(2790, 8370), 2790);
    EXPECT_EQ(search::PaneWidthWithin(2790, 8369), 2789);
    EXPECT_EQ(search::PaneWidthWithin(2790, 5000), -580);
}

TEST(SearchLayout, Splitter)
{
    constexpr struct {
        const char *name;
        int paneWidth, mouseX, want;
    } cases[] = {
        {"to the right", 4000, 300, 4300},
        {"to the left", 4000, -300, 3700},
        {"nowhere", 4000, 0, 4000},
        {"left of a narrow pane is refused", 3599, -10, 3599},
        {"not at 30 percent", 3600, -10, 3590},
        {"right of a narrow pane is not", 1000, 10, 1010},
        {"right of a wide pane is refused", 6458, 10, 6458},
        {"not just below", 6457, 10, 6467},
        {"left of a wide pane is not", 8000, -10, 7990},
        {"beyond the left edge", 4000, -5000, 0},
        {"beyond the right edge", 4000, 9000, 11850},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LayoutState s = Window(12000, 8000);
        s.paneWidth = c.paneWidth;
        PlanLayout(s);
        EXPECT_EQ(search::PaneWidthOfDrag(s, c.mouseX), c.want);
    }
}

} // namespace
