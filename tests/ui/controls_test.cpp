#include "runtime/error.h"
#include "ui/controls/command.h"
#include "ui/controls/inputs/checkbox.h"
#include "ui/controls/inputs/scrollbar.h"
#include "ui/controls/inputs/textbox.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/timer.h"
#include "ui/twips.h"

#include <gtest/gtest.h>

namespace
{

TEST(Twips, FifteenToThePixel)
{
    EXPECT_EQ(ui::TwipsOfPixels(3), 45);
    EXPECT_EQ(ui::TwipsOfPixels(-3), -45);
    const struct {
        int twips, pixels;
    } cases[] = {{0, 0}, {45, 3}, {52, 3}, {53, 4}, {-45, -3}, {-52, -3}, {-53, -4}};
    for (const auto &c : cases)
        EXPECT_EQ(ui::PixelsOfTwips(c.twips), c.pixels) << c.twips;
}

TEST(Area, NotifiesOnlyOfADifference)
{
    ui::Area area({1, 2, 3, 4});
    int calls = 0;
    area.changed = [&] { ++calls; };
    area.SetPlace({1, 2, 3, 4});
    area.SetVisible(true);
    EXPECT_EQ(calls, 0);
    area.SetTop(7);
    area.SetEnabled(false);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(area.Place(), (ui::Rect{1, 7, 3, 4}));
}

TEST(Label, GrowsWithItsText)
{
    ui::Label label("x", {0, 0, 100, 10});
    label.measureHeight = [](const ui::Label &l) {
        return 20 *
               static_cast<int>(1 + l.Caption().size() * 10 / static_cast<unsigned>(l.Width()));
    };
    label.SetCaption("twenty characters it");
    EXPECT_EQ(label.Height(), 60);
    label.SetWidth(50);
    label.FitHeight();
    EXPECT_EQ(label.Height(), 100);
}

TEST(Label, LogicMayChangeTheCaptionBeforeTheWidgetIsNotified)
{
    ui::Label label;
    std::string seen;
    bool inProgress = false;
    label.changed = [&] { seen = label.Caption(); };
    label.captionChanged = [&] {
        if (inProgress)
            return;
        inProgress = true;
        label.SetCaption(label.Caption() + "!");
        inProgress = false;
    };
    label.SetCaption("a");
    EXPECT_EQ(label.Caption(), "a!");
    EXPECT_EQ(seen, "a!");
}

TEST(ScrollBar, HoldsItsValueInRange)
{
    ui::ScrollBar bar;
    int events = 0;
    bar.valueChanged = [&] { ++events; };
    bar.SetMax(100'000);
    EXPECT_EQ(bar.Max(), 32767);
    bar.SetValue(40'000);
    EXPECT_EQ(bar.Value(), 32767);
    bar.SetMax(10);
    EXPECT_EQ(bar.Value(), 10);
    EXPECT_EQ(events, 2);
    bar.ResetValue();
    EXPECT_EQ(bar.Value(), 0);
    EXPECT_EQ(events, 2);
    bar.SetValue(-1);
    EXPECT_EQ(bar.Value(), 0);
}

TEST(Timer, FiresOnlyWhileEnabled)
{
    ui::Timer timer(150);
    int fired = 0;
    timer.event = [&] { ++fired; };
    timer.Fire();
    timer.SetEnabled(true);
    timer.Fire();
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(timer.IntervalMs(), 150);
}

TEST(OtherControls, KeepTheirState)
{
    ui::CheckBox check("&Back up");
    int calls = 0;
    check.changed = [&] { ++calls; };
    check.SetChecked(true);
    check.SetChecked(true);
    EXPECT_TRUE(check.Checked());
    EXPECT_EQ(calls, 1);

    ui::TextBox box;
    int typed = 0;
    box.textChanged = [&] { ++typed; };
    box.SetText("a");
    box.SetText("a");
    EXPECT_EQ(typed, 1);

    ui::Picture picture;
    EXPECT_FALSE(picture.HasPicture());
    picture.SetImage("MP3");
    EXPECT_TRUE(picture.HasPicture());

    ui::Command command("submnuExit", "&Quit");
    command.changed = [&] { ++calls; };
    command.SetEnabled(false);
    command.SetVisible(false);
    command.SetVisible(false);
    EXPECT_EQ(calls, 3);
}

} // namespace
