#include "runtime/error.h"
#include "tests/browser/formfixture.h"

namespace
{

using namespace browser;
using platform::Pointer;

class ItemList : public tests::FormTest
{
protected:
    MainForm &Library()
    {
        Add({"One", "Abba", "Arrival", "1976", "", "Pop", "/m/a/one.mp3"});
        Add({"Two", "Abba", "Arrival", "1976", "c", "Pop", "/m/a/two.mp3"});
        Add({"Three", "Blur", "", "", "", "", "/m/a/sub/three.mp3"});
        AddPlayList("mine");
        MainForm &form = Loaded();
        LoadTreeView(form, "");
        form.TreeJustExpanded = false; // as after a first move of the user
        return form;
    }

    // The columns by position: key and width.
    std::string Columns()
    {
        std::string columns;
        for (int position = 1; position <= 99; ++position)
            for (const ui::ListColumn &column : Form().LV.Columns())
                if (column.position == position)
                    columns.append(column.key + "=" + std::to_string(column.widthTwips) + " ");
        return columns;
    }

    // A row on which no statement of a click leaves its mark.
    void MarkList()
    {
        Form().LV.ClearRows();
        Form().LV.AddRow("mark", "", "", {});
    }
};

TEST_F(ItemList, AGroupShowsItsValues)
{
    MainForm &form = Library();
    Click("ByArtist");
    EXPECT_EQ(Rows(), "#ABBA:Abba #BLUR:Blur ");
    EXPECT_EQ(Columns(), "Icon=300 Title=3200 ");
    EXPECT_EQ(form.LV.Columns()[1].caption, "Artist");
    EXPECT_EQ(form.LV.Image(0), "closed");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist");
    EXPECT_EQ(form.lblWebFolder.Caption(), "By Artist");
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[1].Visible());
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
    Click("ByList");
    EXPECT_EQ(Rows(), "&mine:mine ");
    EXPECT_EQ(form.LV.Image(0), "M3U");
    EXPECT_EQ(form.lblWebFolder.Caption(), "By List");
}

TEST_F(ItemList, AValueShowsItsFilesWithoutTheSharedColumn)
{
    MainForm &form = Library();
    Click("#ABBA");
    EXPECT_EQ(Rows(), "/0:One /1:Two ");
    EXPECT_EQ(Columns(), "Icon=450 Title=2400 Artist=0 Album=2400 Year=800 Comment=1200 Genre=900 "
                         "Label=1000 Path=2000 Non=500 ");
    EXPECT_EQ(form.LV.Image(0), "MP3");
    EXPECT_EQ(form.LV.SubItem(1, "Comment"), "c");
    EXPECT_EQ(form.LV.SubItem(1, "Label"), "");
    EXPECT_EQ(form.LV.SubItemCount(1), 8);
    EXPECT_EQ(form.LV.Text(1), "");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Abba");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Abba");
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemList, AFolderShowsItsOwnFilesWithThePathInFront)
{
    Library();
    Click("\u00BF/M/A/");
    EXPECT_EQ(Rows(), "/0:One /1:Two "); // none of the sub-folder
    EXPECT_TRUE(Columns().starts_with("Icon=450 Path=2000 Title=2400 Artist=2400 ")) << Columns();
}

TEST_F(ItemList, AValueWithoutRowsShowsTheWarning)
{
    MainForm &form = Library();
    catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete);
    Click("#ABBA");
    EXPECT_EQ(Rows(), "/0:No items found. ");
    EXPECT_EQ(Columns(), "Icon=450 Warning=2400 ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Abba");
    form.LV.SelectOnly(0);
    EXPECT_EQ(SelectedPath(form.LV), "");
    form.notBuilt.clear();
    form.calls.playMP3File = [](std::string_view, ui::KeyedList &) { FAIL() << "no song"; };
    form.LV.onDblClick();
    ClickPopup(form, "Play");
    EXPECT_EQ(Rows(), "/0:No items found. ");
}

TEST_F(ItemList, ClicksInTheTree)
{
    using Act = void (*)(MainForm &);
    const struct {
        const char *name;
        Act act;
        const char *rows; // "mark:" when the list was left alone
        bool collapsed, expanded;
    } cases[] = {
        {"no selection", [](MainForm &f) { f.TV.ClickNothing(); }, "mark: ", false, false},
        {"the root", [](MainForm &f) { f.TV.ClickText(f.TV.Find("MP3s")); }, "mark: ", false,
         false},
        {"a group's text", [](MainForm &f) { f.TV.ClickText(f.TV.Find("ByAlbum")); },
         "~: ~ARRIVAL:Arrival ", false, false},
        {"a move by key", [](MainForm &f) { f.TV.MoveTo(f.TV.Find("#BLUR")); }, "/0:Three ", false,
         false},
        {"a plus sign", [](MainForm &f) { f.TV.ClickExpander(f.TV.Find("ByAlbum")); },
         "mark: ", false, false},
        {"a minus sign of the selected group",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
         },
         "mark: ", false, false},
        {"a minus sign over the selected value",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.Select(f.TV.Find("~ARRIVAL"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
         },
         "mark: ", false, false},
        {"a minus sign elsewhere lists the selected value again",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.Select(f.TV.Find("#BLUR"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
         },
         "/0:Three ", false, false},
        {"the plus sign's mark is used up: a move by key lists",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.MoveTo(f.TV.Find("~ARRIVAL"));
         },
         "/0:One /1:Two ", false, false},
        {"the minus sign's mark is used up: a move by key lists",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.Select(f.TV.Find("ByAlbum"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.MoveTo(f.TV.Find("#BLUR"));
         },
         "/0:Three ", false, false},
        {"expanding from code keeps the flag for the next click",
         [](MainForm &f) { f.TV.SetExpanded(f.TV.Find("ByAlbum"), true); }, "mark: ", false, true},
        {"the click after it: its second event counts",
         [](MainForm &f) {
             f.TV.SetExpanded(f.TV.Find("ByAlbum"), true);
             f.TV.ClickText(f.TV.Find("#BLUR"));
         },
         "/0:Three ", false, false},
        {"a move by key after it is passed over",
         [](MainForm &f) {
             f.TV.SetExpanded(f.TV.Find("ByAlbum"), true);
             f.TV.MoveTo(f.TV.Find("#BLUR"));
         },
         "mark: ", false, false},
        {"expanding from code selects the node",
         [](MainForm &f) {
             f.TV.SetExpanded(f.TV.Find("ByAlbum"), true);
             f.TV.ClickNothing();
             f.TV.ClickNothing();
         },
         "~: ~ARRIVAL:Arrival ", false, false},
    };
    MainForm &form = Library();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LoadTreeView(form, "");
        form.TV.Select(ui::kNoNode);
        form.TreeJustCollapsed = form.TreeJustExpanded = false;
        MarkList();
        c.act(form);
        EXPECT_EQ(Rows(), c.rows);
        EXPECT_EQ(form.TreeJustCollapsed, c.collapsed);
        EXPECT_EQ(form.TreeJustExpanded, c.expanded);
    }
}

TEST_F(ItemList, RebuildingTheTreeLeavesTheFlagOfTheRootsExpansion)
{
    MainForm &form = Library();
    LoadTreeView(form, "");
    EXPECT_TRUE(form.TreeJustExpanded);
    EXPECT_EQ(form.TV.Selected(), form.TV.Find("MP3s"));
    Click("#BLUR"); // its first event takes the flag away, its second one lists
    EXPECT_EQ(Rows(), "/0:Three ");
}

TEST_F(ItemList, TheSecondEventOfAClickReusesTheRows)
{
    MainForm &form = Library();
    const auto before = form.LV.Filling();
    Click("#ABBA");
    EXPECT_EQ(form.LV.Filling(), before + 1);
    Add({"Four", "Abba", "", "", "", "", "/m/a/four.mp3"});
    Click("#ABBA"); // another click looks again
    EXPECT_EQ(form.LV.Filling(), before + 2);
    EXPECT_EQ(form.LV.Count(), 3);
    Click("ByArtist");
    EXPECT_EQ(form.LV.Filling(), before + 3);
}

TEST_F(ItemList, EveryClickDisablesTheFileCommandsAndAFileRowEnablesThem)
{
    MainForm &form = Library();
    form.notBuilt.clear();
    Click("#ABBA");
    EXPECT_FALSE(form.FindMenu("submnuRename")->Enabled());
    form.LV.SelectOnly(0);
    form.LV.onClick();
    for (const auto name : FileCommands()) {
        EXPECT_TRUE(form.FindMenu(name)->Enabled()) << name;
        EXPECT_TRUE(form.FindButton(name)->Enabled()) << name;
    }
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    form.TV.ClickExpander(form.TV.Find("ByAlbum"));
    EXPECT_FALSE(form.FindButton("submnuRename")->Enabled());
    Click("ByArtist");
    form.LV.SelectOnly(0);
    form.LV.onClick();
    EXPECT_FALSE(form.FindMenu("submnuRename")->Enabled());
}

TEST_F(ItemList, ADoubleClickOpensAValueAndPlaysAFile)
{
    MainForm &form = Library();
    Click("ByArtist");
    form.LV.SelectOnly(form.LV.Find("#BLUR"));
    form.LV.onDblClick();
    EXPECT_EQ(Rows(), "/0:Three ");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Blur");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Blur");
    EXPECT_EQ(form.LV.Columns()[2].widthTwips, 0);

    std::string played;
    form.calls.playMP3File = [&](std::string_view path, ui::KeyedList &list) {
        EXPECT_EQ(&list, &form.LV);
        played += path;
    };
    form.LV.SelectOnly(0);
    form.LV.onDblClick();
    EXPECT_EQ(played, ""); // not built: no dead click, no effect
    form.notBuilt.erase("PlayMP3File");
    form.LV.onDblClick();
    EXPECT_EQ(played, "/m/a/sub/three.mp3");
    EXPECT_EQ(Rows(), "/0:Three ");
}

TEST_F(ItemList, APlayListIsListedOnceThatIsBuilt)
{
    MainForm &form = Library();
    Click("#ABBA");
    Click("&mine");
    EXPECT_EQ(Rows(), ""); // no rows of another node are left
    EXPECT_EQ(form.WEPath.Caption(), "MP3/PlayLists/mine");
    std::string listed;
    form.notBuilt.erase("PlayListFile");
    form.calls.listPlayList = [&](std::string_view name) { listed = name; };
    form.TV.MoveTo(form.TV.Find("&mine"));
    EXPECT_EQ(listed, "mine");
}

TEST_F(ItemList, PathsThatDifferOnlyInCaseShareOneRow)
{
    Add({"One", "Abba", "", "", "", "", "/m/one.mp3"});
    Add({"One again", "Abba", "", "", "", "", "/m/ONE.mp3"});
    Add({"\u00D1", "Abba", "", "", "", "", "/m/\u00F1.mp3"});
    Add({"\u00D1 again", "Abba", "", "", "", "", "/M/\u00D1.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    Click("#ABBA");
    EXPECT_EQ(form.LV.Count(), 2);
}

TEST_F(ItemList, ColumnClicksSort)
{
    MainForm &form = Library();
    Click("\u00A1POP");
    EXPECT_EQ(Rows(), "/0:One /1:Two ");
    form.LV.onColumnClick(2);
    EXPECT_EQ(Rows(), "/0:One /1:Two ");
    form.LV.onColumnClick(2);
    EXPECT_EQ(Rows(), "/1:Two /0:One ");
    form.LV.onColumnClick(6); // another column keeps the order
    EXPECT_TRUE(form.LV.Descending());
    EXPECT_EQ(form.LV.SortKey(), 5);
    EXPECT_EQ(Rows(), "/1:Two /0:One ");
    form.LV.onColumnClick(6);
    EXPECT_EQ(Rows(), "/0:One /1:Two ");
}

TEST_F(ItemList, ALongFillYieldsEveryFiftyRows)
{
    for (int i = 0; i < 120; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i)});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SEL_ByArtist", catalogue::kStoredSelect, catalogue::Value(std::string("ABBA"))));
    std::vector<int> counts;
    desktop.pointers.clear();
    desktop.onYield = [&] { counts.push_back(form.LV.Count()); };
    EXPECT_TRUE(FillItemList(form.LV, *records));
    EXPECT_EQ(counts, (std::vector<int>{0, 50, 100, 120}));
    EXPECT_EQ(desktop.pointers, (std::vector<Pointer>{Pointer::Hourglass, Pointer::Normal}));
}

TEST_F(ItemList, ClosingTheOwnerEndsTheFill)
{
    Library();
    const auto records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s", catalogue::kSelect));
    int asked = 0;
    EXPECT_FALSE(FillItemList(Form().LV, *records, [&] { return ++asked < 2; }));
    EXPECT_EQ(Form().LV.Count(), 2);
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemList, ANewerClickTakesTheListOver)
{
    for (int i = 0; i < 120; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i)});
    Add({"Three", "Blur", "", "", "", "", "/m/three.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.TreeJustExpanded = false;
    desktop.onYield = [&] {
        if (form.LV.Count() != 100)
            return;
        desktop.onYield = nullptr;
        form.TV.ClickText(form.TV.Find("#BLUR"));
    };
    form.TV.MoveTo(form.TV.Find("#ABBA"));
    EXPECT_EQ(Rows(), "/0:Three ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Blur");
    EXPECT_FALSE(form.LV.Updating());
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

} // namespace
