#include "ui/cLogo.h"

#include <gtest/gtest.h>

namespace
{

ui::cLogo Strip(int widthPx, int heightPx)
{
    ui::cLogo logo;
    logo.widthTwips = widthPx * 15;
    logo.heightTwips = heightPx * 15;
    return logo;
}

TEST(cLogo, StepsAreTheHeightOver255)
{
    const struct {
        int height, step;
        std::size_t bands;
    } cases[] = {{0, 1, 1},     {100, 1, 101}, {254, 1, 255},
                 {255, 1, 256}, {510, 2, 256}, {764, 2, 383}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.height);
        const ui::StripPlan plan = Strip(24, c.height).Plan();
        EXPECT_EQ(plan.bands.size(), c.bands);
        EXPECT_EQ(plan.bands.front().top, c.height);
        EXPECT_EQ(plan.bands.front().height, c.step);
    }
}

// A band is painted with the colour computed after the band before it, so the one a step above the
// bottom still has the bottom's colour.
TEST(cLogo, RunsFromTheBottomColourToTheTopColour)
{
    ui::cLogo logo = Strip(24, 255);
    logo.SetStartColor(0);
    logo.SetEndColor(0xFF0000);
    const auto bands = logo.Plan().bands;
    EXPECT_EQ(bands[0].colour, 0U);
    EXPECT_EQ(bands[1].colour, 0U);
    EXPECT_EQ(bands[2].colour, 0x010000U);
    EXPECT_EQ(bands.back().top, 0);
    EXPECT_EQ(bands.back().colour, 0xFE0000U);
    logo.SetStartColor(0x0000FF);
    logo.SetEndColor(0x00FF00);
    EXPECT_EQ(logo.Plan().bands[128].colour, 0x007F80U);
}

TEST(cLogo, PartsAreRoundedHalfToEven)
{
    ui::cLogo logo = Strip(24, 2);
    logo.SetEndColor(0x010305); // half way: 2.5, 1.5, 0.5
    EXPECT_EQ(logo.Plan().bands[2].colour, 0x000202U);
}

TEST(cLogo, IconAndCaptionAreAtTheBottom)
{
    ui::cLogo logo = Strip(24, 200);
    logo.hasImageList = true;
    logo.IconIndex = 4;
    ui::StripPlan plan = logo.Plan();
    ASSERT_TRUE(plan.icon.has_value());
    EXPECT_EQ(plan.icon->x, 4);
    EXPECT_EQ(plan.icon->y, 182);
    EXPECT_EQ(plan.text.x, 0);
    EXPECT_EQ(plan.text.y, 180);
    logo.IconIndex = 0;
    plan = logo.Plan();
    EXPECT_FALSE(plan.icon.has_value());
    EXPECT_EQ(plan.text.y, 198);
    logo.IconIndex = 4;
    logo.hasImageList = false;
    EXPECT_FALSE(logo.Plan().icon.has_value());
}

TEST(cLogo, SystemColoursAreResolvedWhenSet)
{
    ui::cLogo logo;
    EXPECT_EQ(logo.StartColor(), 0U);
    EXPECT_EQ(logo.EndColor(), 0xF0F0F0U);
    logo.systemColour = [](int number) { return number == 15 ? 0x112233U : 0x445566U; };
    logo.SetEndColor(0x8000000F);
    EXPECT_EQ(logo.EndColor(), 0x112233U);
    logo.SetStartColor(0x80000005);
    EXPECT_EQ(logo.StartColor(), 0x445566U);
}

TEST(cLogo, PaintsOnlyWhenAskedAndOnlyOnASurface)
{
    ui::cLogo logo = Strip(24, 10);
    logo.Draw(); // no surface
    int painted = 0;
    logo.DrawingObject = [&](const ui::StripPlan &plan) {
        ++painted;
        EXPECT_EQ(plan.bands.size(), 11U);
    };
    logo.Caption = "Quenlin";
    EXPECT_EQ(painted, 0);
    logo.Draw();
    EXPECT_EQ(painted, 1);
}

TEST(cLogo, APieceIsBesideEachItem)
{
    const ui::StripPiece piece = ui::PieceForItem(24 * 15 + 14, 2, 40, 22);
    EXPECT_EQ(piece.sourceX, 0);
    EXPECT_EQ(piece.sourceY, 40);
    EXPECT_EQ(piece.width, 24);
    EXPECT_EQ(piece.height, 22);
    EXPECT_EQ(piece.targetX, 2);
    EXPECT_EQ(piece.targetY, 40);
    EXPECT_EQ(piece.itemLeft, 27);
}

} // namespace
