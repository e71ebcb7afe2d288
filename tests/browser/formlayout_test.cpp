// The main form's layout on its controls, its splitter, the bar over its status bar.
#include "tests/browser/formfixture.h"

namespace
{

using namespace browser;
using FormLayout = tests::FormTest;

TEST_F(FormLayout, AFullLayoutIsSavedAfterOneYield)
{
    MainForm &form = Loaded();
    shell::TheGlobals().InitialTVWidth = 3333;
    form.window = {10, 20, 12150, 7350};
    form.scaleWidth = 12000;
    desktop.yields = 0;
    desktop.onYield = [&] { EXPECT_EQ(Setting("Last Safe Configuration", "Width"), "none"); };
    ReDrawForm(form);
    EXPECT_EQ(desktop.yields, 1);
    const std::pair<const char *, const char *> want[] = {{"Width", "12150"},
                                                          {"Height", "7350"},
                                                          {"Top", "20"},
                                                          {"Left", "10"},
                                                          {"Initial TV Width", "3333"}};
    for (const auto &[key, value] : want)
        EXPECT_EQ(Setting("Last Safe Configuration", key), value) << key;
    EXPECT_EQ(Setting("Preferences", "Initial TV Width"), "3333");
    EXPECT_EQ(Setting("Preferences", "Width"), "none");

    desktop.onYield = nullptr;
    shell::TheGlobals().InitialTVWidth = -1; // impossible: the last safe width is used again
    ReDrawForm(form);
    EXPECT_EQ(form.TV.Width(), 3333);

    settings.values["Quenlin/Last Safe Configuration/Initial TV Width"] = "-50"; // it is not safe
    shell::TheGlobals().InitialTVWidth = -1;
    ReDrawForm(form);
    EXPECT_EQ(form.TV.Width(), 3000);
}

TEST_F(FormLayout, AMinimisedOrImpossibleWindowSavesNothing)
{
    MainForm &form = Loaded();
    form.minimised = true;
    ReDrawForm(form);
    form.minimised = false;
    form.window.height = 500;
    ReDrawForm(form);
    EXPECT_EQ(Setting("Last Safe Configuration", "Width"), "none");
}

TEST_F(FormLayout, AResizeLaysOutThenWrapsThePanelsText)
{
    MainForm &form = Loaded();
    std::string order;
    form.placed = [&] { order += "layout "; };
    form.lblInfo.measureHeight = [&](const ui::Label &) {
        order += "wrap ";
        return 200;
    };
    ResizeMainForm(form);
    EXPECT_TRUE(order.starts_with("layout wrap")) << order;
    EXPECT_FALSE(form.vsbBack.Visible());
    form.lblInfo.measureHeight = [](const ui::Label &) { return 20'000; };
    ResizeMainForm(form);
    EXPECT_TRUE(form.vsbBack.Visible()) << "the wrapped text no longer fits";
    form.vsbBack.SetValue(500);
    EXPECT_LT(form.pctWeb.Top(), 0);
    ReDrawForm(form);
    EXPECT_EQ(form.pctWeb.Top(), 0);
    EXPECT_EQ(form.vsbBack.Value(), 0);
    form.lblInfo.measureHeight = [&](const ui::Label &) {
        order += "wrap ";
        return 200;
    };
    order.clear();
    form.minimised = true;
    ResizeMainForm(form);
    EXPECT_EQ(order, "");
}

TEST_F(FormLayout, TheSplitter)
{
    MainForm &form = Loaded();
    ReDrawForm(form);
    Separator_MouseMove(form, 500); // not pressed
    EXPECT_EQ(form.TV.Width(), 3000);
    Separator_MouseDown(form);
    desktop.onYield = [&] { EXPECT_FALSE(form.SeparatorDragging); };
    Separator_MouseMove(form, 500);
    EXPECT_EQ(form.TV.Width(), 3500);
    EXPECT_TRUE(form.SeparatorDragging);
    Separator_MouseMove(form, -99999);
    EXPECT_EQ(form.TV.Width(), 0);
    Separator_MouseMove(form, 99999);
    EXPECT_EQ(form.Separator.Left(), form.scaleWidth - form.Separator.Width());
    desktop.onYield = [&] { Separator_MouseUp(form); }; // released while it was laid out
    Separator_MouseMove(form, -6000);
    EXPECT_FALSE(form.SeparatorDragging);
    desktop.onYield = nullptr;
    Separator_MouseDown(form);
    Separator_MouseMove(form, 100);
    EXPECT_TRUE(form.SeparatorDragging) << "the next drag goes on";
}

TEST_F(FormLayout, TheProgressBarIsLaidOverItsPanelOnce)
{
    MainForm &form = Loaded();
    form.SB.SetPlace({0, 6000, 12000, 345});
    ShowProgressBar(form);
    EXPECT_EQ(form.pbarArea.Place(), (ui::Rect{5040, 40, 1420, 305}));
    EXPECT_FALSE(form.SB.Panel("PlayingStatus").autoSize);
    form.SB.SetWidth("Playing", 1000);
    ShowProgressBar(form);
    EXPECT_EQ(form.pbarArea.Left(), 5040);
}

} // namespace
