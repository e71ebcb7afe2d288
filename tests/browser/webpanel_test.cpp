#include "tests/browser/formfixture.h"

namespace
{

using namespace browser;

class WebPanel : public tests::FormTest
{
protected:
    // The file view with two songs and the shared column hidden.
    MainForm &Filled()
    {
        MainForm &form = Loaded();
        form.ShowSelectedItems.SetEnabled(false);
        form.LV.ClearColumns();
        for (const char *key : {"Icon", "Title", "Artist", "Comment", "Path", "Non"})
            form.LV.AddColumn(key, key, 100);
        form.LV.SetSubItemKeys({"Title", "Artist", "Comment", "Path"});
        AddRow("/0", {"R&B", "Abba", "", "/m/1.mp3"});
        AddRow("/1", {"Two", "Blur", "x", "/m/2.mp3"});
        AddRow("/2", {"Three", "Cure", "y", "/m/3.mp3"});
        return form;
    }

    void AddRow(std::string_view key, std::vector<std::string_view> cells)
    {
        Form().LV.AddRow(key, "", "MP3", cells);
    }

    void Summary() { ShowSelectionSummary(Form().LV, Form()); }
};

TEST_F(WebPanel, ASelectedRowShowsItsFields)
{
    MainForm &form = Filled();
    form.LV.SelectOnly(0);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption(), "R&&B"); // shows as one "&"
    EXPECT_EQ(form.WebItemType.Caption(), "MP3 File");
    EXPECT_EQ(form.lblInfo.Caption(),
              "Title: R&&B\r\n\r\nArtist: Abba\r\n\r\nPath: /m/1.mp3\r\n\r\n"); // no Comment
    EXPECT_FALSE(form.WebToolTip.Visible());
}

TEST_F(WebPanel, AColumnOfNoWidthIsLeftOut)
{
    MainForm &form = Filled();
    form.LV.SetColumnWidth("Artist", 0);
    form.LV.SetColumnPosition("Path", 2); // the order of the text is that of the columns' numbers
    form.LV.SelectOnly(1);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.lblInfo.Caption(), "Title: Two\r\n\r\nComment: x\r\n\r\nPath: /m/2.mp3\r\n\r\n");
}

TEST_F(WebPanel, LongTextsAreCutAfter1200Characters)
{
    const struct {
        const char *name;
        std::string text, shown;
    } cases[] = {
        {"1200", std::string(1200, 'x'), std::string(1200, 'x')},
        {"1201", std::string(1201, 'x'), std::string(1200, 'x') + "\r ..."},
        {"characters, not bytes", runtime::Replace(std::string(1200, 'x'), "x", "\u00E9"),
         runtime::Replace(std::string(1200, 'x'), "x", "\u00E9")},
        {"characters, not bytes, and one more",
         runtime::Replace(std::string(1201, 'x'), "x", "\u20AC"),
         runtime::Replace(std::string(1200, 'x'), "x", "\u20AC") + "\r ..."},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        MainForm &form = Form();
        form.LV.ClearRows();
        Filled();
        AddRow("/9", {"", "", c.text, ""});
        form.LV.SelectOnly(form.LV.Find("/9"));
        ShowSelectedItemInfo(form.LV, form);
        EXPECT_EQ(form.lblInfo.Caption(), "Comment: " + c.shown + "\r\n\r\n");
    }
}

TEST_F(WebPanel, WhileTheTimerIsEnabledAllIsEmpty)
{
    MainForm &form = Filled();
    form.LV.SelectOnly(0);
    ShowSelectedItemInfo(form.LV, form);
    form.ShowSelectedItems.SetEnabled(true);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption(), "");
    EXPECT_EQ(form.WebItemType.Caption(), "");
    EXPECT_EQ(form.lblInfo.Caption(), "");
    form.ShowSelectedItems.Fire(); // the selection has settled
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
    EXPECT_EQ(form.WebItemName.Caption(), "R&&B");
}

TEST_F(WebPanel, TextsAreOneBelowTheOther)
{
    MainForm &form = Filled();
    form.pctWebLine.SetPlace({0, 500, 2775, 700});
    form.LV.SelectOnly(0);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Top(), 1230);
    EXPECT_EQ(form.WebItemType.Top(), 1430); // a line is 200 here
    EXPECT_EQ(form.WebToolTip.Top(), 1430 + form.WebItemType.Height());
    EXPECT_EQ(form.lblInfo.Top(), form.WebToolTip.Top() + form.WebToolTip.Height());
    EXPECT_EQ(form.lblInfo.Width(), 2515);
}

TEST_F(WebPanel, SummaryOfSelections)
{
    const struct {
        const char *name;
        std::vector<ui::RowId> rows;
        const char *itemName, *type, *info;
    } cases[] = {
        {"none: only the text empties", {}, "before", "before", ""},
        {"one",
         {1},
         "Two",
         "MP3 File",
         "Title: Two\r\n\r\nArtist: Blur\r\n\r\nComment: x\r\n\r\nPath: /m/2.mp3\r\n\r\n"},
        {"two files", {0, 1}, "", "2 mp3 filess selected.\r\r\r", "\rAbba - R&&B\rBlur - Two\r"},
        {"three files",
         {0, 1, 2},
         "",
         "3 mp3 filess selected.\r\r\r\r",
         "\rAbba - R&&B\rBlur - Two\rCure - Three\r"},
        {"the last kind stays",
         {1, 3},
         "",
         "2 artist folderss selected.\r\r\r",
         "\rBlur - Two\rAbba\r"},
        {"a folder among files",
         {3, 1},
         "",
         "2 artist folderss selected.\r\r\r",
         "\rBlur - Two\rAbba\r"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Form().LV.ClearRows();
        MainForm &form = Filled();
        AddRow("#ABBA", {"Abba"});
        for (ui::Label *label : {&form.WebItemName, &form.WebItemType, &form.lblInfo})
            label->SetCaption("before");
        form.LV.SetSelection(c.rows, c.rows.empty() ? ui::kNoRow : c.rows.back());
        form.ShowSelectedItems.SetEnabled(true);
        Summary();
        EXPECT_FALSE(form.ShowSelectedItems.Enabled());
        EXPECT_EQ(form.WebItemName.Caption(), c.itemName);
        EXPECT_EQ(form.WebItemType.Caption(), c.type);
        EXPECT_EQ(form.lblInfo.Caption(), c.info);
    }
}

TEST_F(WebPanel, NothingSelectedLeavesTheTypeAndTakesTheBarAway)
{
    MainForm &form = Filled();
    form.ReDrawForm = nullptr;
    form.LV.SetPlace({0, 0, 5000, 3000});
    form.pctWeb.SetPlace({0, -400, 2775, 9000});
    form.WebItemType.SetCaption("MP3 File");
    form.lblInfo.SetTop(2000);
    form.lblInfo.SetCaption("x");
    form.vsbBack.SetVisible(true);
    form.ShowSelectedItems.SetEnabled(true);
    Summary();
    EXPECT_EQ(form.WebItemType.Caption(), "MP3 File");
    EXPECT_EQ(form.lblInfo.Caption(), "");
    EXPECT_FALSE(form.vsbBack.Visible());
    EXPECT_EQ(form.pctWeb.Height(), 3000);
    EXPECT_EQ(form.pctWeb.Top(), 0);
}

TEST_F(WebPanel, AnEmptyListLeavesAnEmptyPanel)
{
    MainForm &form = Filled();
    form.LV.ClearRows();
    form.lblInfo.SetCaption("before");
    form.WebToolTip.SetVisible(true);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption() + form.WebItemType.Caption() + form.lblInfo.Caption(), "");
    EXPECT_FALSE(form.WebToolTip.Visible());
}

TEST_F(WebPanel, ATextOfASelectionStaysUntilItIsEmptied)
{
    MainForm &form = Filled();
    form.LV.SelectOnly(1);
    form.lblInfo.SetPlace({120, 77, 99, 200});
    form.lblInfo.SetCaption("Comment: many items selected.");
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption(), "Two");
    EXPECT_EQ(form.lblInfo.Caption(), "Comment: many items selected.");
    EXPECT_EQ(form.lblInfo.Top(), 77);
    EXPECT_EQ(form.lblInfo.Width(), 99);
    form.ShowSelectedItems.SetEnabled(true);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.lblInfo.Caption(), "");
}

TEST_F(WebPanel, TheSummaryNamesTheRowsByTheirMainText)
{
    MainForm &form = Filled();
    form.LV.AddRow("/7", "a & b", "MP3", std::vector<std::string_view>{"Four & more", "Dire", ""});
    form.LV.AddRow("/8", "c", "MP3", std::vector<std::string_view>{"Five", "Eels", ""});
    const ui::RowId rows[] = {form.LV.Find("/7"), form.LV.Find("/8")};
    form.LV.SetSelection(rows, rows[1]);
    form.WebToolTip.SetVisible(true);
    Summary();
    EXPECT_EQ(form.WebItemType.Caption(), "2 mp3 filess selected.\r\ra && b\rc");
    EXPECT_EQ(form.lblInfo.Caption(), "\rDire - Four && more\rEels - Five\r");
    EXPECT_FALSE(form.WebToolTip.Visible());
}

// The entries of a play list have fewer sub-items, and none of these names.
TEST_F(WebPanel, RowsWithoutTheFieldsShowTheirFirst)
{
    MainForm &form = Form();
    Loaded();
    form.ShowSelectedItems.SetEnabled(false);
    form.LV.ClearColumns();
    form.LV.AddColumn("Icon", "", 300);
    form.LV.AddColumn("Name", "Name", 300);
    form.LV.SetSubItemKeys({"Name"});
    AddRow("/0", {"one"});
    AddRow("/1", {"two"});
    form.LV.SelectOnly(1);
    ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption(), "");
    EXPECT_EQ(form.WebItemType.Caption(), "MP3 File");
    EXPECT_EQ(form.lblInfo.Caption(), "Name: two\r\n\r\n");
    const ui::RowId rows[] = {0, 1};
    form.LV.SetSelection(rows, 1);
    Summary();
    EXPECT_EQ(form.lblInfo.Caption(), "\rone\rtwo\r");
}

TEST_F(WebPanel, InAnotherLanguageEveryRowShowsItsFirstSubItem)
{
    tests::WriteFile(folder / "x.qlt", "[ItemType]\nMP3File=Lied\nMP3Files=Lieder\n"
                                       "[Status]\nPluralSelected= gewaehlt\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    MainForm &form = Filled();
    const ui::RowId rows[] = {0, 1};
    form.LV.SetSelection(rows, 1);
    Summary();
    EXPECT_EQ(form.WebItemType.Caption(), "2 liedergewaehlt\r\r\r"); // blanks at the ends are cut
    EXPECT_EQ(form.lblInfo.Caption(), "\rR&&B\rTwo\r");
}

TEST_F(WebPanel, TheScrollBarFollowsTheText)
{
    MainForm &form = Filled();
    form.LV.SetPlace({0, 0, 5000, 3000});
    form.lblInfo.measureHeight = nullptr;
    const struct {
        const char *name;
        int panelHeight, bottom;
        bool bar;
        int height, max, large, small;
    } cases[] = {
        {"fits", 3120, 3119, false, 3000, -1, -1, -1},
        {"as high as the panel", 3120, 3120, true, 3120, 120, 12, 1},
        {"just taller than the list", 3003, 3004, true, 3004, 4, 0, 99},
        {"tall", 3120, 5555, true, 5555, 2555, 256, 26},
        {"taller than a bar can tell", 3120, 90'000, true, 90'000, 32767, 3277, 328},
        {"fits again after a very long text", 90'000, 3500, false, 3000, -1, -1, -1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        form.vsbBack.SetSmallChange(99);
        form.pctWeb.SetPlace({0, 0, 2775, c.panelHeight});
        form.lblInfo.SetPlace({120, 1000, 2515, c.bottom - 1000});
        AdjustPanelScroll(form.LV, form);
        EXPECT_EQ(form.vsbBack.Visible(), c.bar);
        EXPECT_EQ(form.pctWeb.Height(), c.height);
        if (!c.bar)
            continue;
        EXPECT_EQ(form.vsbBack.Left(), 2775);
        EXPECT_EQ(form.vsbBack.Max(), c.max);
        EXPECT_EQ(form.vsbBack.LargeChange(), c.large);
        EXPECT_EQ(form.vsbBack.SmallChange(), c.small);
    }
    EXPECT_EQ(form.pctWeb.Top(), 0);
    form.WebStyleOn = false;
    form.pctWeb.SetHeight(77);
    AdjustPanelScroll(form.LV, form);
    EXPECT_EQ(form.pctWeb.Height(), 77);
}

// The splitter's layout, and showing the panel again, give pctWeb a new height; a long text keeps
// its own height and its scroll bar.
TEST_F(WebPanel, ALongTextOutlivesTheLayout)
{
    MainForm &form = Filled();
    form.window = {0, 0, 12000, 7350};
    form.scaleWidth = 11880;
    form.lblInfo.measureHeight = nullptr;
    form.lblInfo.SetPlace({120, 1000, 2515, 20'000});
    AdjustPanelScroll(form.LV, form);
    const auto expectAll = [&](const char *when) {
        EXPECT_TRUE(form.vsbBack.Visible()) << when;
        EXPECT_EQ(form.pctWeb.Height(), 21'000) << when;
        EXPECT_EQ(form.vsbBack.Max(), 21'000 - form.LV.Height()) << when;
    };
    Separator_MouseDown(form);
    Separator_MouseMove(form, 500);
    Separator_MouseUp(form);
    expectAll("after a drag");
    RunCommand(form, "submnuWebStyle");
    EXPECT_FALSE(form.vsbBack.Visible());
    RunCommand(form, "submnuWebStyle");
    expectAll("when the panel is on again");
}

TEST_F(WebPanel, ScrollingMovesThePanelAndFocusesTheList)
{
    MainForm &form = Filled();
    int focused = 0;
    form.focusList = [&] { ++focused; };
    form.vsbBack.SetMax(500);
    form.vsbBack.SetValue(120);
    EXPECT_EQ(form.pctWeb.Top(), -120);
    EXPECT_EQ(focused, 1);
}

TEST_F(WebPanel, HidingTheTextsEmptiesThemAndLaysOut)
{
    MainForm &form = Filled();
    int layouts = 0;
    form.ReDrawForm = [&] { ++layouts; };
    form.lblInfo.SetCaption("x");
    form.WebItemName.SetCaption("x");
    form.WebToolTip.SetCaption("");
    form.WebToolTip.SetVisible(false);
    form.vsbBack.SetVisible(true);
    SetPanelTextVisible(true, form);
    EXPECT_FALSE(form.WebToolTip.Visible()); // it has no text
    EXPECT_TRUE(form.vsbBack.Visible());
    EXPECT_EQ(form.lblInfo.Caption() + form.WebItemName.Caption(), "");
    form.WebToolTip.SetCaption("tip");
    SetPanelTextVisible(true, form);
    EXPECT_TRUE(form.WebToolTip.Visible());
    EXPECT_EQ(form.WebToolTip.Caption(), "");
    SetPanelTextVisible(false, form);
    EXPECT_FALSE(form.lblInfo.Visible());
    EXPECT_FALSE(form.WebItemName.Visible());
    EXPECT_FALSE(form.vsbBack.Visible());
    EXPECT_EQ(layouts, 3);
}

TEST_F(WebPanel, ThePileIsTwoCopiesBehindTheIcon)
{
    MainForm &form = Filled();
    form.ImgIcon.SetPlace({120, 900, 480, 480});
    form.ImgIcon.SetImage("MP3");
    LoadOtherImages(true, form);
    EXPECT_EQ(form.ImgOthers[0].Image(), "MP3");
    EXPECT_EQ(form.ImgOthers[0].Place(), (ui::Rect{220, 850, 480, 480}));
    EXPECT_EQ(form.ImgOthers[1].Place(), (ui::Rect{320, 800, 480, 480}));
    EXPECT_TRUE(form.ImgOthers[0].Visible() && form.ImgOthers[1].Visible());
    LoadOtherImages(false, form);
    EXPECT_FALSE(form.ImgOthers[0].Visible() || form.ImgOthers[1].Visible());
    LoadOtherImages(true, form);
    form.ImgIcon.SetImage("");
    LoadOtherImages(true, form);
    EXPECT_FALSE(form.ImgOthers[0].Visible() || form.ImgOthers[1].Visible());
}

TEST_F(WebPanel, CaptionsDoubleTheirAmpersandsOnce)
{
    MainForm &form = Filled();
    form.WEPath.SetCaption("MP3/By Artist/Simon & Garfunkel");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Simon && Garfunkel");
    form.lblWebFolder.SetPlace({120, 100, 2515, 200});
    form.lblWebFolder.SetCaption("A & B\rC");
    EXPECT_EQ(form.lblWebFolder.Caption(), "A && B\rC");
    EXPECT_EQ(form.pctWebLine.Top(), 500); // two lines of 200 below 100
    form.lblWebFolder.SetCaption("");
    EXPECT_EQ(form.pctWebLine.Top(), 500);
    form.lblWebFolder.SetCaption("A");
    EXPECT_EQ(form.pctWebLine.Top(), 300);
}

TEST_F(WebPanel, TheSearchPanelIsCleared)
{
    ResetInfoLabelTop();
    MainForm &form = Filled();
    form.LV.SetPlace({0, 0, 5000, 3210});
    form.lblInfo.SetTop(2000);
    form.lblWebFolder.SetPlace({120, 100, 2515, 200});
    form.WebItemName.SetCaption("Two");
    form.WebToolTip.SetCaption("tip");
    form.WebToolTip.SetVisible(true);
    form.vsbBack.SetVisible(true);
    int layouts = 0;
    form.ReDrawForm = [&] { ++layouts; };
    desktop.yields = 0;
    std::vector<bool> lineShown;
    desktop.onYield = [&] { lineShown.push_back(form.pctWebLine.Visible()); };
    ClearSearchPanel(form.LV, form, false);
    EXPECT_EQ(desktop.yields, 2);
    EXPECT_EQ(lineShown, (std::vector<bool>{true, true}));
    EXPECT_EQ(layouts, 1);
    EXPECT_EQ(form.pctWeb.Height(), 3210);
    EXPECT_EQ(form.WebItemName.Caption() + form.WebToolTip.Caption(), "");
    EXPECT_FALSE(form.WebToolTip.Visible());
    EXPECT_FALSE(form.vsbBack.Visible());
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    EXPECT_FALSE(form.lblInfo.Visible());
    EXPECT_TRUE(form.pctWebLine.Visible());
    EXPECT_EQ(form.pctWebLine.Top(), 330);
    form.lblInfo.SetTop(2500);
    ClearSearchPanel(form.LV, form, true);
    EXPECT_EQ(form.WebItemType.Caption(), ""); // every second time
    EXPECT_EQ(form.lblInfo.Top(), 2000);       // the first top that was seen
    EXPECT_TRUE(form.lblInfo.Visible());
    form.pctWebLine.SetVisible(false);
    ClearSearchPanel(form.LV, form, true);
    EXPECT_FALSE(form.pctWebLine.Visible()); // as it was
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    ResetInfoLabelTop();
}

} // namespace
