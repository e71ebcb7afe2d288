#include "tests/browser/itemlistfixture.h"

namespace
{

using namespace browser;
using platform::Pointer;
using ItemList = tests::ItemListTest;

TEST_F(ItemList, AGroupShowsItsValues)
{
    MainForm &form = Library();
    Click("ByArtist");
    EXPECT_EQ(ShownRows(), "#ABBA:Abba #BLUR:Blur ");
    EXPECT_EQ(Columns(), "Icon=300 Title=3200 ");
    EXPECT_EQ(form.LV.Columns()[1].caption, "Artist");
    EXPECT_EQ(form.LV.Image(0), "closed");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist");
    EXPECT_EQ(form.lblWebFolder.Caption(), "By Artist");
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[1].Visible());
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
    Click("ByList");
    EXPECT_EQ(ShownRows(), "&mine:mine ");
    EXPECT_EQ(form.LV.Image(0), "M3U");
    EXPECT_EQ(form.LV.Columns()[1].caption, "List");
    EXPECT_EQ(form.lblWebFolder.Caption(), "By List");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/PlayLists");
}

TEST_F(ItemList, AGroupWithoutValuesEmptiesTheList)
{
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.TreeJustExpanded = false;
    MarkList();
    Click("ByArtist");
    EXPECT_EQ(ShownRows(), "");
    EXPECT_EQ(Columns(), "Icon=300 Title=3200 ");
}

// Rows of group nodes are never made; they would open all the same.
TEST_F(ItemList, TheRootsColumnHasItsOwnName)
{
    MainForm &form = Library();
    form.LV.ClearRows();
    form.LV.AddRow("MP3s", "", "", {});
    form.LV.SelectOnly(0);
    form.LV.onDblClick();
    EXPECT_EQ(form.LV.Columns()[1].caption, "MP3s");
    EXPECT_TRUE(ShownRows().starts_with("ByTitle:By Title ByArtist:By Artist ")) << ShownRows();
    form.LV.SelectOnly(1);
    form.LV.onDblClick();
    EXPECT_EQ(form.LV.Columns()[1].caption, "Artist");
    EXPECT_EQ(ShownRows(), "#ABBA:Abba #BLUR:Blur ");
}

TEST_F(ItemList, AValueShowsItsFilesWithoutTheSharedColumn)
{
    MainForm &form = Library();
    Click("#ABBA");
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
    EXPECT_EQ(Columns(), "Icon=450 Title=2400 Artist=0 Album=2400 Year=800 Comment=1200 Genre=900 "
                         "Label=1000 Path=2000 Non=500 ");
    EXPECT_EQ(form.LV.Image(0), "MP3");
    EXPECT_EQ(form.LV.SubItem(1, "Comment"), "c");
    EXPECT_EQ(form.LV.SubItem(1, "Label"), "");
    EXPECT_EQ(form.LV.SubItemCount(1), 8);
    EXPECT_EQ(form.LV.Text(1), "");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Abba");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Abba");
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[0].Visible() && form.ImgOthers[1].Visible());
    EXPECT_FALSE(form.ShowSelectedItems.Enabled());
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemList, AClickEmptiesThePanelsTexts)
{
    MainForm &form = Library();
    for (const char *key : {"#ABBA", "ByArtist"}) {
        SCOPED_TRACE(key);
        for (ui::Label *label : {&form.WebItemName, &form.WebItemType, &form.lblInfo})
            label->SetCaption("before");
        Click(key);
        EXPECT_EQ(form.WebItemName.Caption() + form.WebItemType.Caption() + form.lblInfo.Caption(),
                  "");
    }
}

TEST_F(ItemList, PlusSignAndRootLeaveThePanelAlone)
{
    MainForm &form = Library();
    Click("#ABBA");
    const auto panel = [&form] {
        return form.lblWebFolder.Caption() + "|" + form.WEPath.Caption() + "|" +
               form.WebItemName.Caption() + "|" + form.lblInfo.Caption() + "|" +
               form.ImgIcon.Image() + "|" + (form.ShowSelectedItems.Enabled() ? "on" : "off");
    };
    form.WebItemName.SetCaption("name");
    form.lblInfo.SetCaption("info");
    form.ImgIcon.SetImage("M3U");
    const std::string before = panel();
    const auto clearCount = form.LV.ClearCount();
    form.TV.ClickExpander(form.TV.Find("ByAlbum"));
    EXPECT_EQ(form.TV.Selected(), form.TV.Find("ByAlbum")); // expanding selects
    EXPECT_EQ(panel(), before);
    form.TV.ClickExpander(form.TV.Find("ByAlbum"));
    EXPECT_EQ(panel(), before);
    Click("MP3s");
    EXPECT_EQ(panel(), before);
    EXPECT_EQ(form.LV.ClearCount(), clearCount);
    EXPECT_EQ(Columns().find("Artist=0") == std::string::npos, false);
}

TEST_F(ItemList, TheUsersLanguage)
{
    tests::WriteFile(folder / "x.qlt", "[ColumnHeaders]\nTitle=Titel\nLabel=Datentr\u00E4ger\n"
                                       "Path=Ort\n[Search]\nWarning=Achtung\n"
                                       "NoItemsFound=Nichts da.\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    MainForm &form = Library();
    Click("#ABBA");
    std::string captions;
    for (const ui::ListColumn &column : form.LV.Columns())
        captions += column.caption + "|";
    EXPECT_EQ(captions, "|Titel|Artist|Album|Year|Comment|Genre|Datentr\u00E4ger|Ort||");
    catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete);
    Click("#ABBA");
    EXPECT_EQ(form.LV.Columns()[1].caption, "Achtung");
    EXPECT_EQ(ShownRows(), "/0:Nichts da. ");
    Click("ByTitle");
    EXPECT_EQ(form.LV.Columns()[1].caption, "Titel");
}

TEST_F(ItemList, AFolderShowsItsOwnFilesWithThePathInFront)
{
    Library();
    Click("\u00BF/M/A/");
    EXPECT_EQ(ShownRows(), "/0:One /1:Two "); // none of the sub-folder
    EXPECT_TRUE(Columns().starts_with("Icon=450 Path=2000 Title=2400 Artist=2400 ")) << Columns();
}

TEST_F(ItemList, ClicksInTheTree)
{
    using Act = void (*)(MainForm &);
    const struct {
        const char *name;
        Act act;
        const char *rows; // "mark:" when the list was not changed
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
        {"a minus sign elsewhere lists the selected open group again",
         [](MainForm &f) {
             f.TV.ClickExpander(f.TV.Find("ByArtist"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
             f.TV.Select(f.TV.Find("ByArtist"));
             f.TV.ClickExpander(f.TV.Find("ByAlbum"));
         },
         "#ABBA:Abba #BLUR:Blur ", false, false},
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
        EXPECT_EQ(ShownRows(), c.rows);
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
    EXPECT_EQ(ShownRows(), "/0:Three ");
}

TEST_F(ItemList, TheSecondEventOfAClickReusesTheRows)
{
    MainForm &form = Library();
    const auto before = form.LV.ClearCount();
    Click("#ABBA");
    EXPECT_EQ(form.LV.ClearCount(), before + 1);
    Add({"Four", "Abba", "", "", "", "", "/m/a/four.mp3"});
    Click("#ABBA"); // another click looks again
    EXPECT_EQ(form.LV.ClearCount(), before + 2);
    EXPECT_EQ(form.LV.Count(), 3);
    Click("ByArtist");
    EXPECT_EQ(form.LV.ClearCount(), before + 3);
}

// The rows of the list or the selected node may have changed between the two events.
TEST_F(ItemList, TheSecondEventOfAClickLooksAgainWhereItMust)
{
    MainForm &form = Library();
    const auto before = form.LV.ClearCount();
    const auto clickAbba = [&](const std::function<void()> &between) {
        form.TV.onNodeClick = [&](ui::NodeId) {
            ItemClick(form, form.TV);
            between();
        };
        Click("#ABBA");
    };
    clickAbba([] {});
    EXPECT_EQ(form.LV.ClearCount(), before + 1);
    clickAbba([&form] { form.LV.ClearRows(); });
    EXPECT_EQ(form.LV.ClearCount(), before + 4);
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
    clickAbba([&form] { form.TV.Select(form.TV.Find("#BLUR")); });
    EXPECT_EQ(ShownRows(), "/0:Three ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Blur");
}

TEST_F(ItemList, AnotherWindowsListShowsItsOwnGroups)
{
    MainForm &form = Library();
    MarkList();
    ui::KeyedList other;
    other.AddRow("ByArtist", "", "", {});
    other.AddRow("/0", "", "", {});
    other.SelectOnly(0);
    ItemClick(form, other);
    EXPECT_EQ(ShownRows(), "mark: ");
    ASSERT_EQ(other.Count(), 2);
    EXPECT_EQ(other.Columns().size(), 2U);
    other.SelectOnly(other.Find("#BLUR"));
    ItemClick(form, other); // the files of a value are listed in the main window
    EXPECT_EQ(ShownRows(), "/0:Three ");
    EXPECT_EQ(other.Count(), 2);

    const ui::KeyedList *playedFrom = nullptr;
    RegisterItemKind("/", [&](const std::string &, ui::KeyedList &list) { playedFrom = &list; });
    EXPECT_TRUE(FillItemList(other, *AllRecords()));
    other.SelectOnly(0);
    ItemClick(form, other);
    EXPECT_EQ(playedFrom, &other);
    EXPECT_EQ(other.Count(), 3);
}

TEST_F(ItemList, ShowingTheItemsOfANode)
{
    MainForm &form = Library();
    const ui::NodeId configuration = form.TV.Add(form.TV.Find("MP3s"), "Configuration", "x");
    form.TV.Add(configuration, "&y", "y");
    MarkList();
    ShowItems(form, configuration, form.LV);
    EXPECT_EQ(ShownRows(), "mark: ");
    ShowItems(form, form.TV.Find("ByYear"), form.LV);
    EXPECT_EQ(ShownRows(), "?: ?1976:1976 ");
    EXPECT_EQ(form.LV.Text(1), "");
    EXPECT_EQ(form.LV.SubItem(1, "Title"), "1976");
    ShowItems(form, form.TV.Find("?1976"), form.LV); // a node without children
    EXPECT_EQ(ShownRows(), "");
}

TEST_F(ItemList, EveryClickDisablesTheFileCommandsAndAFileRowEnablesThem)
{
    MainForm &form = Library();
    RegisterFileCommands();
    Click("#ABBA");
    EXPECT_FALSE(form.FindMenu("submnuRename")->Enabled());
    form.LV.SelectOnly(0);
    form.LV.onClick();
    for (const auto name : FileCommands()) {
        EXPECT_TRUE(form.FindMenu(name)->Enabled()) << name;
        EXPECT_TRUE(form.FindButton(name)->Enabled()) << name;
    }
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    form.LV.onDblClick(); // plays the file, and disables the commands
    EXPECT_FALSE(form.FindButton("submnuRename")->Enabled());
    form.LV.onClick();
    EXPECT_TRUE(form.FindButton("submnuRename")->Enabled());
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
    form.ImgIcon.SetImage("M3U"); // as a play list leaves it
    form.LV.SelectOnly(form.LV.Find("#BLUR"));
    std::string heading; // as the first yield of the filling shows it
    desktop.onYield = [&] {
        if (heading.empty())
            heading = form.lblWebFolder.Caption() + "|" + form.WEPath.Caption();
    };
    form.LV.onDblClick();
    EXPECT_EQ(heading, "Blur|MP3/By Artist/Blur");
    EXPECT_EQ(ShownRows(), "/0:Three ");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Blur");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Blur");
    EXPECT_EQ(form.LV.Columns()[2].widthTwips, 0);
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[1].Visible());

    std::string played;
    form.LV.SelectOnly(0);
    form.LV.onDblClick(); // nothing plays files here: no effect
    RegisterItemKind("/", [&](const std::string &path, ui::KeyedList &list) {
        EXPECT_EQ(&list, &form.LV);
        played += path;
    });
    form.LV.onDblClick();
    EXPECT_EQ(played, "/m/a/sub/three.mp3");
    EXPECT_EQ(ShownRows(), "/0:Three ");
}

TEST_F(ItemList, APlayListIsListedByWhoRegisteredItsKind)
{
    MainForm &form = Library();
    Click("#ABBA");
    Click("&mine");
    EXPECT_EQ(ShownRows(), ""); // no rows of another node are left
    EXPECT_EQ(form.WEPath.Caption(), "MP3/PlayLists/mine");
    std::string listed;
    RegisterItemKind("&", [&](const std::string &name, ui::KeyedList &list) {
        EXPECT_EQ(&list, &form.LV);
        listed = name;
        desktop.SetPointer(Pointer::Hourglass);
        desktop.yields = 0;
    });
    form.WEPath.SetCaption("before");
    form.TV.MoveTo(form.TV.Find("&mine"));
    EXPECT_EQ(listed, "mine");
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
    EXPECT_EQ(desktop.yields, 1);
    EXPECT_EQ(form.WEPath.Caption(), "MP3/PlayLists/mine");
}

TEST_F(ItemList, ADoubleClickOnAPlayListsRowPlaysTheEntry)
{
    MainForm &form = Library();
    std::string played;
    RegisterItemKind("/", [&](const std::string &path, ui::KeyedList &) { played += path; });
    RegisterItemKind("&", [](const std::string &, ui::KeyedList &list) {
        list.ClearRows();
        list.SetSubItemKeys({"Denomination", "Path"});
        const std::string_view cells[] = {"Song", "/other/song.mp3"};
        list.AddRow("/0", "", "MP3", cells);
    });
    Click("&mine");
    form.LV.SelectOnly(0);
    form.LV.onDblClick();
    EXPECT_EQ(played, "/other/song.mp3");
}

TEST_F(ItemList, APlayListIsListedOnceAClickAndEmptiesThePanel)
{
    MainForm &form = Library();
    int listed = 0;
    RegisterItemKind("&", [&](const std::string &, ui::KeyedList &list) {
        ++listed;
        list.ClearRows();
        form.ImgIcon.SetImage("M3U");
        browser::LoadOtherImages(false, form);
    });
    form.lblInfo.SetCaption("of another song");
    Click("&mine");
    EXPECT_EQ(listed, 1); // although a click raises two events
    EXPECT_EQ(form.ImgIcon.Image(), "M3U");
    EXPECT_FALSE(form.ImgOthers[0].Visible());
    EXPECT_EQ(form.lblInfo.Caption(), "");
    Click("&mine"); // another click reads it again
    EXPECT_EQ(listed, 2);
}

TEST_F(ItemList, APlayListThatIsNotReadyLeavesRowsAndPanel)
{
    MainForm &form = Library();
    int asked = 0;
    RegisterItemKind("&", [&](const std::string &, ui::KeyedList &) { ++asked; });
    Click("#ABBA");
    const std::string rows = ShownRows();
    form.lblInfo.SetCaption("of a song");
    Click("&mine");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(ShownRows(), rows);
    EXPECT_EQ(form.lblInfo.Caption(), "of a song");
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[0].Visible());
}

TEST_F(ItemList, APlayListThatANewerClickTookOverChangesNothingMore)
{
    MainForm &form = Library();
    RegisterItemKind("&", [&](const std::string &, ui::KeyedList &) {
        form.TV.MoveTo(form.TV.Find("#ABBA"));
        form.WEPath.SetCaption("of the newer click");
    });
    form.TV.MoveTo(form.TV.Find("&mine"));
    EXPECT_EQ(form.WEPath.Caption(), "of the newer click");
}

TEST_F(ItemList, ClicksInTheListShowThePanelsTextsAndStartTheTimer)
{
    MainForm &form = Library();
    Click("#ABBA");
    form.LV.SelectOnly(0);
    for (const auto *event : {&form.LV.onClick, &form.LV.onItemClick}) {
        form.ShowSelectedItems.SetEnabled(false);
        form.lblInfo.SetVisible(false);
        form.lblInfo.SetCaption("before");
        (*event)();
        EXPECT_TRUE(form.ShowSelectedItems.Enabled());
        EXPECT_TRUE(form.lblInfo.Visible());
        EXPECT_EQ(form.lblInfo.Caption(), "");
    }
}

} // namespace
