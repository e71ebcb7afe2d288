#include "browser/itemlist.h"
#include "search/install.h"
#include "search/searchform.h"
#include "tests/browser/formfixture.h"

namespace
{

using search::frmSearch;
using search::SearchForm;
using Texts = std::vector<std::string>;

class Search : public tests::FormTest
{
protected:
    Search()
    {
        browser::ResetInfoLabelTop();
        Loaded();
    }
    ~Search() override { search::ResetSearchForm(); }

    SearchForm &Shown()
    {
        SearchForm &form = frmSearch();
        const auto line = [](const ui::Label &) { return 200; };
        for (ui::Label *label : {&form.lblWebFolder, &form.WebItemName, &form.lblInfo})
            label->measureHeight = line;
        search::LoadSearchForm(form);
        search::ReDrawForm(form);
        search::SetVisible(form, true);
        return form;
    }

    // Two songs, one with "love" in its title, one in its album; and one without.
    SearchForm &WithSongs()
    {
        Add({"Love me do", "Beatles", "Please", "1963", "", "Pop", "/m/1.mp3"});
        Add({"One", "U2", "Love songs", "1991", "", "Rock", "/m/2.mp3"});
        Add({"Help", "Beatles", "Help", "1965", "", "Pop", "/m/3.mp3"});
        return Shown();
    }

    void Run(SearchForm &form, const std::string &text, int type = 0)
    {
        form.options.txtToFind.SetText(text);
        form.options.cmbType.SetListIndex(type);
        form.options.cmdSearch.Click();
    }

    // The rows: key and title.
    std::string Found(const SearchForm &form)
    {
        std::string rows;
        for (ui::RowId row = 0; row < form.ListView.Count(); ++row)
            rows += std::string(form.ListView.Key(row)) + ":" +
                    std::string(form.ListView.SubItemAt(row, 1)) + " ";
        return rows;
    }

    std::string Count(const SearchForm &form) { return form.SBar.Panel("Items").text; }
};

TEST_F(Search, LoadsItsTexts)
{
    SearchForm &form = Shown();
    EXPECT_EQ(form.options.cmbType.Items(),
              (Texts{"Any Words (OR)", "All Words (AND)", "Exact Phrase"}));
    EXPECT_EQ(form.options.cmbType.ListIndex(), 0);
    EXPECT_EQ(form.options.cmdAll[0].Caption(), "&Uncheck All");
    EXPECT_EQ(form.options.cmdAll[1].Caption(), "&Check All");
    EXPECT_EQ(form.options.cmdSearch.Caption(), "&Search");
    EXPECT_EQ(form.options.lblToFind.Caption(), "Text to find");
    EXPECT_EQ(form.options.lblTypeOfSearch.Caption(), "Type of search");
    Texts captions;
    for (const ui::CheckBox &box : form.options.chkField)
        captions.push_back(box.Caption());
    EXPECT_EQ(captions,
              (Texts{"Title", "Artist", "Album", "Year", "Comment", "Genre", "Path", "Lyrics"}));
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    EXPECT_EQ(form.lblInfo.Caption(), "");
    EXPECT_EQ(Count(form), "0 Item(s)");
    EXPECT_EQ(form.lblFolders.Caption(), "Search");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Search Results");
    EXPECT_EQ(form.PaneWidth, 2790);
    EXPECT_TRUE(form.WebStyleOn);
}

TEST_F(Search, TheLanguageChangesCaptionsAndNotTheStatement)
{
    tests::WriteFile(folder / "x.qlt", "[Search]\nSearch=Suche\nAnyWords=Eines\nItems=Lieder\n"
                                       "[ColumnHeaders]\nTitle=Titel\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    SearchForm &form = WithSongs();
    EXPECT_EQ(form.lblFolders.Caption(), "Suche");
    EXPECT_EQ(form.options.cmbType.Items()[0], "Eines");
    EXPECT_EQ(form.options.chkField[0].Caption(), "Titel");
    form.options.chkField[0].SetChecked(true);
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do ");
    EXPECT_EQ(Count(form), "1 Lieder");
}

TEST_F(Search, FillsTheListWithFileRowsAndCounts)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "LOVE");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One ");
    EXPECT_EQ(Count(form), "2 Item(s)");
    EXPECT_EQ(form.options.txtToFind.Text(), "LOVE "); // the blank stays in the box
    EXPECT_EQ(form.ListView.Columns().size(), 10u);
    EXPECT_EQ(form.ListView.SubItem(0, "Path"), "/m/1.mp3");
    EXPECT_EQ(desktop.pointers.back(), platform::Pointer::Normal);
    EXPECT_NE(
        std::count(desktop.pointers.begin(), desktop.pointers.end(), platform::Pointer::Hourglass),
        0);
    Run(form, "help"); // all rows and the count are new
    EXPECT_EQ(Found(form), "/0:Help ");
    EXPECT_EQ(Count(form), "1 Item(s)");
}

TEST_F(Search, NothingFoundShowsTheWarning)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "nowhere");
    EXPECT_EQ(Found(form), "/0:No items found. ");
    EXPECT_EQ(Count(form), "0 Item(s)");
}

TEST_F(Search, TheSameRowThroughTwoFieldsShowsOnce)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "help"); // in title and album
    EXPECT_EQ(form.ListView.Count(), 1);
}

TEST_F(Search, WithoutAFieldTheBoxAndNoQuery)
{
    SearchForm &form = WithSongs();
    form.options.chkField[0].SetChecked(true);
    Run(form, "love");
    form.options.cmdAll[0].Click();
    Run(form, "help");
    EXPECT_EQ(desktop.boxes, Texts{"You didn't select any field to look into"});
    EXPECT_EQ(Found(form), "/0:Love me do ");
    EXPECT_EQ(form.options.txtToFind.Text(), "help ");
}

TEST_F(Search, CheckAllAndUncheckAll)
{
    SearchForm &form = Shown();
    for (const int index : {1, 0}) {
        form.options.cmdAll[static_cast<std::size_t>(index)].Click();
        for (const ui::CheckBox &box : form.options.chkField)
            EXPECT_EQ(box.Checked(), index == 1);
    }
}

TEST_F(Search, WordsThatLookLikeSyntaxAreData)
{
    SearchForm &form = Shown();
    Add({"What? It's 'so'", "", "", "", "", "", "/m/1.mp3"});
    form.options.chkField[0].SetChecked(true);
    for (const char *text : {"?", "'so'", "It's", "what? it's"}) {
        Run(form, text, 1);
        EXPECT_EQ(Found(form), "/0:What? It's 'so' ") << text;
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Search, ARefusedStatementIsReported)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    std::string words;
    for (int i = 0; i < 3000; ++i)
        words += "word ";
    Run(form, words);
    ASSERT_EQ(desktop.boxes.size(), 1u); // more terms than the engine takes
    EXPECT_TRUE(desktop.boxes[0].starts_with("Error: "));
    Run(form, "love");
    EXPECT_EQ(form.ListView.Count(), 2);
}

TEST_F(Search, ClosingTheWindowEndsTheFillQuietly)
{
    for (int i = 0; i < 120; ++i)
        Add({"t" + std::to_string(i), "", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    SearchForm &form = Shown();
    form.options.chkField[0].SetChecked(true);
    desktop.onYield = [&] {
        if (form.ListView.Count() >= 50)
            search::SetVisible(form, false);
    };
    Run(form, "t");
    EXPECT_EQ(form.ListView.Count(), 50);
    EXPECT_EQ(Count(form), "0 Item(s)"); // a closed window is not touched
    EXPECT_EQ(desktop.pointers.back(), platform::Pointer::Normal);
    EXPECT_EQ(Form().searchList, nullptr);
}

TEST_F(Search, ASecondSearchDuringTheFillEndsTheFirst)
{
    for (int i = 0; i < 120; ++i)
        Add({"t" + std::to_string(i), "", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    Add({"other", "", "", "", "", "", "/m/other.mp3"});
    SearchForm &form = Shown();
    form.options.chkField[0].SetChecked(true);
    bool second = false;
    desktop.onYield = [&] {
        if (form.ListView.Count() >= 50 && !std::exchange(second, true))
            Run(form, "other");
    };
    Run(form, "t");
    EXPECT_TRUE(second);
    EXPECT_EQ(Found(form), "/0:other ");
    EXPECT_EQ(Count(form), "1 Item(s)");
}

TEST_F(Search, TextsAreReadAheadWhileTheWindowShows)
{
    SearchForm &form = WithSongs();
    const auto readAll = [&form] {
        for (int ticks = 0; form.tmrReadAhead.Enabled(); ++ticks) {
            ASSERT_LT(ticks, 1000);
            form.tmrReadAhead.Fire();
        }
    };
    EXPECT_TRUE(form.tmrReadAhead.Enabled());
    readAll();
    form.options.cmdAll[1].Click();
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One ");
    EXPECT_TRUE(form.tmrReadAhead.Enabled()); // looks whether there is anything new
    readAll();
    Add({"Lovely", "", "", "", "", "", "/m/4.mp3"});
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One /2:Lovely ");
    search::SetVisible(form, false);
    form.tmrReadAhead.Fire();
    EXPECT_FALSE(form.tmrReadAhead.Enabled()); // not for a hidden window
    search::PrepareSearch(form);
    catalogue::DataAccess.reset();
    form.tmrReadAhead.Fire();
    EXPECT_FALSE(form.tmrReadAhead.Enabled());
}

TEST_F(Search, TheEndOfTheProgramEndsTheSearch)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    desktop.onYield = [] { catalogue::DataAccess.reset(); };
    Run(form, "love");
    EXPECT_EQ(Count(form), "0 Item(s)");
    Run(form, "love"); // and there is nothing to search any more
    EXPECT_EQ(Count(form), "0 Item(s)");
}

// --- The list.

TEST_F(Search, ADoubleClickPlaysTheRow)
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

TEST_F(Search, AMovedSelectionShowsThePanelAfterTheTimer)
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

TEST_F(Search, AColumnSortsAndTurns)
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

TEST_F(Search, MouseDownWithTheLeftButton)
{
    SearchForm &form = Shown();
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

TEST_F(Search, AClickWithCtrlWaitsUntilHalfASecondAfterTheNearestWholeOne)
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

TEST_F(Search, ARightClickOpensThePopupForTheSelectedRow)
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

TEST_F(Search, ThePaneClosesAndOpensAgain)
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
    settings.values["Quenlin/Windows Size/Initial TreeView Width"] = "900";
    search::ShowOptionsPane(form, false);
    search::ShowOptionsPane(form, true);
    EXPECT_EQ(form.PaneWidth, 3180);
}

TEST_F(Search, TheSplitterMovesWhilePressed)
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

TEST_F(Search, AResizeLaysOutAndResetsThePanel)
{
    SearchForm &form = Shown();
    form.window.width = 8000;
    form.scaleWidth = 8000 - search::kFrameWidth;
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.PaneWidth, 8000 - 5580);
    EXPECT_EQ(form.WebItemType.Caption(), ""); // it held the hint
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    search::SetVisible(form, false);
    form.window.width = 7000;
    search::ResizeSearchForm(form);
    EXPECT_EQ(form.PaneWidth, 8000 - 5580); // not while it is hidden
}

TEST_F(Search, WhatWasTypedStaysWhileTheWindowIsHidden)
{
    SearchForm &form = WithSongs();
    EXPECT_EQ(Form().searchList, &form.ListView);
    form.options.cmdAll[1].Click();
    Run(form, "love", 1);
    search::SetVisible(form, false);
    EXPECT_EQ(Form().searchList, nullptr);
    search::SetVisible(form, true);
    EXPECT_EQ(form.options.txtToFind.Text(), "love ");
    EXPECT_EQ(form.options.cmbType.ListIndex(), 1);
    EXPECT_EQ(form.ListView.Count(), 2);
}

} // namespace
