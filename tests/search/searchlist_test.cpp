// The list, the pane and the splitter of the search window.
#include "tests/search/searchfixture.h"

namespace
{

using search::SearchForm;

class SearchList : public tests::SearchFormTest
{
};

// --- The list.

TEST_F(SearchList, ADoubleClickPlaysTheRow)
{
    std::string played;
    browser::RegisterItemKind("/",
                              [&](const std::string &path, ui::KeyedList &) { played = path; });
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "love");
    form.ListView.SelectOnly(1);
    form.ListView.onDblClick();
    EXPECT_EQ(played, "/m/2.mp3");
    played.clear();
    Run(form, "nowhere");
    form.ListView.SelectOnly(0);
    form.ListView.onDblClick(); // the warning is no file
    EXPECT_EQ(played, "");
}

TEST_F(SearchList, AMovedSelectionShowsThePanelAfterTheTimer)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "love");
    EXPECT_EQ(form.ObjClicked, nullptr);
    form.ListView.SelectOnly(0);
    form.ListView.onItemClick();
    EXPECT_EQ(form.ObjClicked, &form.ListView);
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    form.ShowSelectedItems.Fire();
    EXPECT_EQ(form.WebItemName.Caption(), "Love me do");
    EXPECT_NE(form.lblInfo.Caption().find("Artist: Beatles"), std::string::npos);
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
}

TEST_F(SearchList, AColumnSortsAndTurns)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "m");
    form.ListView.onColumnClick(2);
    EXPECT_EQ(form.ListView.SortKey(), 1);
    EXPECT_FALSE(form.ListView.Descending());
    form.ListView.onColumnClick(2);
    EXPECT_TRUE(form.ListView.Descending());
}

TEST_F(SearchList, MouseDownWithTheLeftButton)
{
    SearchForm &form = Shown();
    EXPECT_EQ(form.ShowSelectedItems.IntervalMs(), 150);
    form.ShowSelectedItems.SetEnabled(true);
    search::ListView_MouseDown(form, 1, false, false);
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
    const auto before = clock.steadyMs;
    search::ListView_MouseDown(form, 1, true, false);
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    form.ShowSelectedItems.SetEnabled(false);
    search::ListView_MouseDown(form, 1, true, true); // Shift and Ctrl do not wait either
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    EXPECT_EQ(clock.steadyMs, before);
}

TEST_F(SearchList, AClickWithCtrlWaitsUntilHalfASecondAfterTheNearestWholeOne)
{
    struct MovingClock : tests::FakeClock {
        double SecondsOfDay() override
        {
            constexpr double kDay = 86400;
            const double seconds = start + static_cast<double>(steadyMs) / 1000;
            return seconds >= kDay ? seconds - kDay : seconds;
        }
        double start = 0;
    } moving;
    const struct {
        const char *name;
        double clicked;   // seconds of the day
        long long heldMs; // at least; one step of the wait more at most
    } cases[] = {{"on the second", 100, 500},
                 {"behind it", 100.25, 250},
                 {"half a second behind", 100.5, 0},
                 {"before the next one", 100.75, 750},
                 {"just behind the half", 101.5625, 938},
                 {"before midnight", 86399.75, 250}};
    SearchForm &form = Shown();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        moving.start = c.clicked;
        moving.steadyMs = 0;
        form.ShowSelectedItems.SetEnabled(false);
        int yields = 0;
        desktop.onYield = [&] {
            EXPECT_FALSE(form.ShowSelectedItems.Enabled()); // not before the wait is over
            ++yields;
        };
        search::ListView_MouseDown(form, 1, false, true);
        desktop.onYield = nullptr;
        EXPECT_GE(moving.steadyMs, c.heldMs);
        EXPECT_LE(moving.steadyMs, c.heldMs + 25);
        EXPECT_EQ(yields > 0, c.heldMs > 0);
        EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    }
}

TEST_F(SearchList, ARightClickOpensThePopupForTheSelectedRow)
{
    SearchForm &form = WithSongs();
    int popups = 0;
    Form().calls.showPopup = [&](int, int) { ++popups; };
    search::ListView_MouseDown(form, 2, false, false);
    EXPECT_EQ(popups, 0); // nothing is selected
    form.options.cmdAll[1].Click();
    Run(form, "love");
    form.ListView.SelectOnly(1);
    search::ListView_MouseDown(form, 2, false, false);
    EXPECT_EQ(popups, 1);
    EXPECT_TRUE(Form().PopupFromSearch);
    EXPECT_EQ(&browser::PopupList(Form()), &form.ListView);
    Run(form, "nowhere");
    form.ListView.SelectOnly(0);
    search::ListView_MouseDown(form, 2, false, false); // the warning's key is a file's
    EXPECT_EQ(popups, 2);
}

// --- The pane.

TEST_F(SearchList, ThePaneClosesAndOpensAgain)
{
    SearchForm &form = Shown();
    form.PaneWidth = 4000;
    search::ReDrawForm(form);
    search::ShowOptionsPane(form, false);
    EXPECT_EQ(form.PaneWidth, -30);
    EXPECT_EQ(form.Separator.Left(), -30);
    EXPECT_FALSE(form.pctCloseTree.Visible());
    EXPECT_FALSE(form.Separator.Visible());
    EXPECT_FALSE(form.pctOptions.Visible());
    search::ShowOptionsPane(form, true);
    EXPECT_EQ(form.PaneWidth, 3850); // 35 percent of 11000
    EXPECT_EQ(form.pctCloseTree.Width(), 3850);
    EXPECT_TRUE(form.pctOptions.Visible());
    settings.values["Quenlin/Windows Size/Initial TreeView Width"] = "2500";
    search::ShowOptionsPane(form, false);
    search::ShowOptionsPane(form, true);
    EXPECT_EQ(form.PaneWidth, 2500);
    for (const char *width : {"900", "0", "-2500", "no number"}) {
        settings.values["Quenlin/Windows Size/Initial TreeView Width"] = width;
        search::ShowOptionsPane(form, false);
        search::ShowOptionsPane(form, true);
        EXPECT_EQ(form.PaneWidth, 3180) << width;
    }
}

TEST_F(SearchList, TheSplitterMovesWhilePressed)
{
    SearchForm &form = Shown();
    form.PaneWidth = 4000;
    search::ReDrawForm(form);
    search::Separator_MouseMove(form, 100);
    EXPECT_EQ(form.PaneWidth, 4000);
    search::Separator_MouseDown(form);
    search::Separator_MouseMove(form, 100);
    EXPECT_EQ(form.PaneWidth, 4100);
    EXPECT_EQ(form.Separator.Left(), 4100);
    search::Separator_MouseUp(form);
    search::Separator_MouseMove(form, 100);
    EXPECT_EQ(form.PaneWidth, 4100);
}

TEST_F(SearchList, AResizeLaysOutAndResetsThePanel)
{
    SearchForm &form = Shown();
    form.size.width = 8000 - search::kFrameWidth;
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.PaneWidth, 8000 - 5580);
    EXPECT_EQ(form.WebItemType.Caption(), ""); // it contained the hint
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    form.SetVisible(false);
    form.size.width = 7000 - search::kFrameWidth;
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.PaneWidth, 8000 - 5580); // not while it is hidden
}

TEST_F(SearchList, AFailureDuringAResizeIsIgnored)
{
    SearchForm &form = Shown();
    desktop.onYield = [] { throw runtime::RuntimeError(runtime::kOverflow); };
    form.size.width = 8000 - search::kFrameWidth;
    search::ResizeSearchForm(form);
    desktop.onYield = nullptr;
    EXPECT_EQ(form.PaneWidth, 8000 - 5580);
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for."); // it ended there
}

TEST_F(SearchList, WhatWasTypedStaysWhileTheWindowIsHidden)
{
    SearchForm &form = WithSongs();
    EXPECT_EQ(Form().searchList, &form.ListView);
    form.options.cmdAll[1].Click();
    Run(form, "love", 1);
    form.SetVisible(false);
    EXPECT_EQ(Form().searchList, nullptr);
    form.SetVisible(true);
    EXPECT_EQ(form.options.txtToFind.Text(), "love ");
    EXPECT_EQ(form.options.cmbType.ListIndex(), 1);
    EXPECT_EQ(form.ListView.Count(), 2);
}

} // namespace
