// Bringing a stored placement back into view.
#include "platform/placement.h"

#include <gtest/gtest.h>

namespace
{

using platform::BringIntoView;
using platform::Placement;

// 1920x1080 with a panel of 30 pixels at the top, and a smaller screen to its right.
const Placement kFirst{0, 450, 28800, 15750};
const Placement kSecond{28800, 0, 15000, 12000};

TEST(BringIntoView, Table)
{
    const struct {
        const char *name;
        Placement wanted;
        std::vector<Placement> screens;
        Placement want;
    } cases[] = {
        {"wholly on one", {300, 600, 12000, 7000}, {kFirst}, {300, 600, 12000, 7000}},
        {"across two", {20000, 600, 20000, 7000}, {kFirst, kSecond}, {20000, 600, 20000, 7000}},
        {"partly out, still graspable",
         {27000, 600, 12000, 7000},
         {kFirst},
         {27000, 600, 12000, 7000}},
        {"the second screen is gone",
         {30000, 600, 12000, 7000},
         {kFirst},
         {16800, 600, 12000, 7000}},
        {"title above the screen", {300, -900, 12000, 7000}, {kFirst}, {300, 450, 12000, 7000}},
        {"title under the panel", {300, 0, 12000, 7000}, {kFirst}, {300, 450, 12000, 7000}},
        {"below the screen", {300, 99999, 12000, 7000}, {kFirst}, {300, 9200, 12000, 7000}},
        {"too little of the title", {28799, 600, 12000, 7000}, {kFirst}, {16800, 600, 12000, 7000}},
        {"the screen has become smaller",
         {0, 450, 28800, 15750},
         {{0, 0, 12000, 9000}},
         {0, 0, 12000, 9000}},
        {"larger and off",
         {-20000, 450, 40000, 3000},
         {kFirst},
         {-20000 + 20000, 450, 28800, 3000}},
        {"onto the one it overlaps most",
         {42900, 600, 12000, 7000},
         {kFirst, kSecond},
         {31800, 600, 12000, 7000}},
        {"no screen at all", {42900, 600, 12000, 7000}, {}, {42900, 600, 12000, 7000}},
        {"numbers at the end of their range",
         {2147483000, 2147483000, 12000, 7000},
         {kFirst},
         {16800, 9200, 12000, 7000}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Placement got = BringIntoView(c.wanted, c.screens);
        EXPECT_EQ(got.left, c.want.left);
        EXPECT_EQ(got.top, c.want.top);
        EXPECT_EQ(got.width, c.want.width);
        EXPECT_EQ(got.height, c.want.height);
    }
}

struct FakeWindows : platform::Windows {
    std::vector<Placement> Screens() override { return {{0, 0, 12000, 9000}}; }
    bool KnowsPlaces() override { return knowsPlaces; }
    void CheckNonModal() override {}
    bool IsDark() override { return false; }

    bool knowsPlaces = true;
};

TEST(BringIntoView, KeepsTheStoredPlaceWherePlacesAreUnknown)
{
    FakeWindows windows;
    EXPECT_EQ(BringIntoView({30000, 600, 20000, 7000}, windows), (Placement{0, 600, 12000, 7000}));
    windows.knowsPlaces = false;
    EXPECT_EQ(BringIntoView({30000, 600, 20000, 7000}, windows),
              (Placement{30000, 600, 12000, 7000}));
}

TEST(PlaceBeside, Table)
{
    const struct {
        const char *name;
        Placement size, window;
        int left, top;
    } cases[] = {
        {"room on the right", {0, 0, 10000, 7000}, {300, 600, 12000, 7000}, 12300, 600},
        {"room on the left alone", {0, 0, 10000, 7000}, {12000, 600, 12000, 7000}, 2000, 600},
        {"as wide as the room", {0, 0, 16500, 7000}, {300, 600, 12000, 7000}, 12300, 600},
        {"no room, more on the right", {0, 0, 12000, 7000}, {6000, 600, 15000, 7000}, 16800, 600},
        {"no room, more on the left", {0, 0, 12000, 7000}, {9000, 600, 15000, 7000}, 0, 600},
        {"over the lower end", {0, 0, 10000, 7000}, {300, 12000, 12000, 3000}, 12300, 9200},
        {"a window that is partly out above",
         {0, 0, 10000, 7000},
         {300, 0, 12000, 3000},
         12300,
         450},
        {"larger than the screen", {0, 0, 30000, 20000}, {300, 600, 12000, 7000}, 0, 450},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Placement result = platform::PlaceBeside(c.size, c.window, kFirst);
        EXPECT_EQ(result, (Placement{c.left, c.top, c.size.width, c.size.height}));
    }
}

} // namespace
