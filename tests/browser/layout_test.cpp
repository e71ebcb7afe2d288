#include "browser/layout.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

using browser::LayoutEnd;
using browser::LayoutState;
using browser::PlanLayout;
using ui::Rect;

LayoutState Window()
{
    LayoutState s;
    s.windowWidth = 12150;
    s.windowHeight = 7350;
    s.scaleWidth = 12000;
    s.toolbarHeight = 540;
    s.statusBarHeight = 345;
    s.aboutTextWidth = 1700;
    s.addressTextLeft = 1020;
    s.initialTVWidth = 3000;
    s.address = {0, 0, 9000, 510};
    s.tree = {0, 1090, 2000, 1000};
    s.separator = {2000, 0, 45, 1000};
    s.panel = {0, -500, 2775, 9000};
    s.list = {2735, 0, 1000, 1000};
    return s;
}

TEST(PlanLayout, NumberByNumber)
{
    LayoutState s = Window();
    ASSERT_EQ(PlanLayout(s, 1234), LayoutEnd::Complete);
    EXPECT_EQ(s.address, (Rect{30, 480, 11850, 510})); // 990 - 510; 12000 - 150
    EXPECT_EQ(s.addressTextWidth, 10770);              // 11850 - 1020 - 60
    EXPECT_EQ(s.playingWidth, 5000);
    EXPECT_EQ(s.aboutWidth, 2000);
    EXPECT_EQ(s.playingStatusWidth, 1500);
    EXPECT_EQ(s.blankWidth, 3300);
    EXPECT_EQ(s.tree, (Rect{0, 1090, 3000, 5225})); // 7350 - 990 - 1090 - 345 - 240 + 540
    EXPECT_EQ(s.separator, (Rect{3000, 990, 45, 5225}));
    EXPECT_EQ(s.borders, (Rect{3045, 1090, 8955, 5225})); // 12150 - 3045 - 150
    EXPECT_EQ(s.panel, (Rect{0, 0, 2775, 5345}));
    EXPECT_TRUE(s.panelVisible);
    EXPECT_EQ(s.list, (Rect{2735, -45, 6190, 5225})); // 8955 - 2735 - 30
    EXPECT_EQ(s.scrollHeight, 5150);
    EXPECT_EQ(s.scrollMax, 120);
    EXPECT_EQ(s.scrollLargeChange, 12);
    EXPECT_EQ(s.scrollSmallChange, 1);
    EXPECT_EQ(s.initialTVWidth, 3000);
}

TEST(PlanLayout, WhatRemainsWhenALaterStepFails)
{
    LayoutState s = Window();
    s.windowWidth = 250;
    s.scaleWidth = 100; // too narrow for the address bar, which is set after the first places
    s.list.left = -45;
    EXPECT_EQ(PlanLayout(s, 2000), LayoutEnd::Failed);
    EXPECT_EQ(s.tree, (Rect{0, 1090, 3000, 5225}));
    EXPECT_EQ(s.separator, (Rect{3000, 1090, 45, 5225})); // 990 + 100
    EXPECT_EQ(s.borders, (Rect{3045, 1080, 145, 5255}));  // 990 + 90; 100 + 45; 5225 + 30
    EXPECT_EQ(s.address, (Rect{0, 480, 9000, 510}));      // only its top was set before
    EXPECT_EQ(s.initialTVWidth, 2000);

    s = Window();
    s.addressTextLeft = 11791; // 11850 - 60 is all there is
    EXPECT_EQ(PlanLayout(s, 2000), LayoutEnd::Failed);
    EXPECT_EQ(s.address.width, 11850);
    EXPECT_EQ(s.separator.top, 1090);
    s.addressTextLeft = 11790;
    s.windowWidth = 2194; // 2195 - 2000 - 45 - 150 is the least
    EXPECT_EQ(PlanLayout(s, 2000), LayoutEnd::Failed);
    EXPECT_EQ(s.addressTextWidth, 0);
    EXPECT_EQ(s.separator, (Rect{2000, 990, 45, 5225})); // the later top
    EXPECT_EQ(s.borders.top, 1080);
}

TEST(PlanLayout, EndsFlushWithTheStatusBarAndTheRightEdge)
{
    LayoutState s = Window();
    ASSERT_EQ(PlanLayout(s, 3000), LayoutEnd::Complete);
    EXPECT_EQ(s.tree.Bottom(), s.windowHeight - browser::kFrameHeight - s.statusBarHeight);
    EXPECT_EQ(s.borders.Right(), s.windowWidth - browser::kFrameWidth);
    const LayoutState once = s;
    ASSERT_EQ(PlanLayout(s, 3000), LayoutEnd::Complete);
    EXPECT_EQ(s, once); // a second layout changes nothing
}

TEST(PlanLayout, Variants)
{
    const struct {
        const char *name;
        std::function<void(LayoutState &)> change;
        std::function<void(const LayoutState &)> check;
    } cases[] = {
        {"the panel off: the list's frame lies outside its parent",
         [](LayoutState &s) { s.webStyleOn = false; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.list, (Rect{-45, -45, 9000, 5225}));
             EXPECT_EQ(s.panel, (Rect{0, -500, 2775, 9000})); // stays as it is, hidden
             EXPECT_FALSE(s.panelVisible);
             EXPECT_EQ(s.scrollMax, 3775);
             EXPECT_EQ(s.scrollLargeChange, 378); // 377.5, half to even
             EXPECT_EQ(s.scrollSmallChange, 38);  // 37.75
         }},
        {"no toolbar", [](LayoutState &s) { s.toolbarVisible = false; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.tree, (Rect{0, 550, 3000, 5225})); // 7350 - 450 - 1090 - 345 - 240
             EXPECT_EQ(s.address.top, -60);
         }},
        {"no address bar", [](LayoutState &s) { s.addressVisible = false; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.tree, (Rect{0, 640, 3000, 5675}));
             EXPECT_EQ(s.address.top, 30);
         }},
        {"the tree's old top counts", [](LayoutState &s) { s.tree.top = 1000; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.tree, (Rect{0, 1090, 3000, 5315}));
         }},
        {"a tree of no width", [](LayoutState &s) { s.initialTVWidth = 0; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.tree.width, 0);
             EXPECT_EQ(s.borders.left, 45);
         }},
        {"no room for the panel Blank: it keeps its width",
         [](LayoutState &s) {
             s.scaleWidth = 8600;
             s.windowWidth = 8750;
             s.blankWidth = 77;
         },
         [](const LayoutState &s) { EXPECT_EQ(s.blankWidth, 77); }},
        {"a panel taller than the list by more than a scroll bar can tell",
         [](LayoutState &s) {
             s.webStyleOn = false;
             s.panel.height = 50'000;
         },
         [](const LayoutState &s) {
             EXPECT_EQ(s.scrollMax, 32767);
             EXPECT_EQ(s.scrollLargeChange, 3277);
             EXPECT_EQ(s.scrollSmallChange, 328);
         }},
        {"a panel as tall as the list: the steps stay",
         [](LayoutState &s) {
             s.webStyleOn = false;
             s.panel.height = 5225;
             s.scrollLargeChange = 5;
         },
         [](const LayoutState &s) {
             EXPECT_EQ(s.scrollMax, 0);
             EXPECT_EQ(s.scrollLargeChange, 5);
         }},
        {"a negative tree width gives way to the last safe one",
         [](LayoutState &s) { s.initialTVWidth = -10; },
         [](const LayoutState &s) {
             EXPECT_EQ(s.initialTVWidth, 1234);
             EXPECT_EQ(s.tree.width, 1234);
             EXPECT_EQ(s.separator.left, 1234);
         }},
        {"a tree wider than the window: what was placed before the failing statement stays",
         [](LayoutState &s) {
             s.initialTVWidth = 12'000;
             s.webStyleOn = false;
         },
         [](const LayoutState &s) {
             EXPECT_EQ(s.initialTVWidth, 1234);
             EXPECT_EQ(s.tree.width, 12'000);
             EXPECT_EQ(s.separator.left, 12'000);
             EXPECT_EQ(s.borders, (Rect{1279, 1090, 10721, 5225}));
         }},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LayoutState s = Window();
        c.change(s);
        EXPECT_EQ(PlanLayout(s, 1234), LayoutEnd::Complete);
        c.check(s);
    }
}

TEST(PlanLayout, AMinimisedWindowKeepsAll)
{
    LayoutState s = Window();
    s.minimised = true;
    const LayoutState before = s;
    EXPECT_EQ(PlanLayout(s, 1234), LayoutEnd::Skipped);
    EXPECT_EQ(s, before);
}

TEST(PlanLayout, AWindowTooSmallForAnyWidthEndsTheLayout)
{
    LayoutState low = Window();
    low.windowHeight = 2000; // a negative height
    EXPECT_EQ(PlanLayout(low, 1234), LayoutEnd::Failed);
    EXPECT_EQ(low.initialTVWidth, 1234);
    EXPECT_EQ(low.tree, (Rect{0, 1090, 2000, 1000}));

    LayoutState narrow = Window();
    narrow.initialTVWidth = 10000; // room for the borders, none for the list beside the panel
    EXPECT_EQ(PlanLayout(narrow, 2000), LayoutEnd::Failed);
    EXPECT_EQ(narrow.borders.left, 10045);
    EXPECT_EQ(narrow.list.width, 1000);
    EXPECT_EQ(narrow.initialTVWidth, 2000); // the next layout has room again
    EXPECT_EQ(PlanLayout(narrow, 2000), LayoutEnd::Complete);
}

TEST(TreeWidthOfDrag, Table)
{
    const struct {
        const char *name;
        int separatorLeft;
        double mouseX;
        int want;
    } cases[] = {
        {"right", 3000, 120, 3120},           {"left", 3000, -120, 2880},
        {"half to even", 3000, 0.5, 3000},    {"half to even, up", 3001, 0.5, 3002},
        {"left of the window", 100, -500, 0}, {"at the right edge", 3000, 9000, 12000},
        {"beyond it", 3000, 9001, 11955},
    };
    for (const auto &c : cases)
        EXPECT_EQ(browser::TreeWidthOfDrag(c.separatorLeft, c.mouseX, 45, 12000), c.want) << c.name;
}

TEST(ProgressBarPlace, IsInsideItsPanel)
{
    EXPECT_EQ(browser::ProgressBarPlace({0, 0, 12000, 345}, 5000, 1500, 40),
              (Rect{5040, 40, 1420, 305}));
    EXPECT_EQ(browser::ProgressBarPlace({100, 6000, 12000, 345}, 5000, 1500, 40),
              (Rect{5140, 6040, 1420, 305}));
}

} // namespace
