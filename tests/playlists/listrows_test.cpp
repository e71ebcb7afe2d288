// What the panel, the popup and the commands make of the rows of an open play list.
#include "browser/form/formpopup.h"
#include "browser/itemlist.h"
#include "browser/webpanel.h"
#include "playlists/install.h"
#include "playlists/lists.h"
#include "tests/browser/formfixture.h"

namespace
{

using browser::MainForm;

class ListRows : public tests::FormTest
{
protected:
    ~ListRows() override { playlists::StopLooking(); }

    MainForm &Opened()
    {
        const std::string list = folder / "mine.m3u";
        tests::WriteFile(list, "#EXTM3U\r\n#EXTINF:1,One & only\r\n/m/one.mp3\r\n/m/two.mp3\r\n");
        catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES('mine', '" + list + "')",
                                          catalogue::kInsert);
        playlists::Install();
        browser::RegisterItemKind(
            "/", [this](const std::string &path, ui::KeyedList &) { played = path; });
        MainForm &form = Loaded();
        browser::LoadTreeView(form, "");
        form.TreeJustExpanded = false;
        form.calls.showPopup = [this](int, int) { ++popups; };
        Click("&mine");
        return form;
    }

    std::string played;
    int popups = 0;
};

TEST_F(ListRows, ThePanelShowsNameAndPathOfTheSelectedOne)
{
    MainForm &form = Opened();
    EXPECT_EQ(form.ImgIcon.Image(), "M3U");
    EXPECT_FALSE(form.ImgOthers[0].Visible()); // one picture, no pile
    EXPECT_EQ(form.lblWebFolder.Caption(), "mine");
    EXPECT_EQ(form.lblInfo.Caption(), "");
    form.LV.SelectOnly(0);
    form.LV.onItemClick();
    form.ShowSelectedItems.Fire();
    EXPECT_EQ(form.WebItemName.Caption(), ""); // these rows have no title
    EXPECT_EQ(form.WebItemType.Caption(), "MP3 File");
    EXPECT_EQ(form.lblInfo.Caption(), "Denomination: One && only\r\n\r\nPath: /m/one.mp3\r\n\r\n");
}

TEST_F(ListRows, SeveralSelectedOnesAreCountedAndNamed)
{
    MainForm &form = Opened();
    const ui::RowId rows[] = {0, 1};
    form.LV.SetSelection(rows, 1);
    form.LV.onItemClick();
    form.ShowSelectedItems.Fire();
    EXPECT_TRUE(form.WebItemType.Caption().starts_with("2 mp3 filess selected."));
    EXPECT_NE(form.lblInfo.Caption().find("One && only"), std::string::npos);
    EXPECT_NE(form.lblInfo.Caption().find("/m/two"), std::string::npos);
}

TEST_F(ListRows, ThePopupOpensForARowAndItsPathIsTheEntrys)
{
    MainForm &form = Opened();
    form.PopupFromSearch = true;
    browser::LV_MouseDown(form, 2, 1);
    EXPECT_EQ(popups, 1);
    EXPECT_FALSE(form.PopupFromSearch);
    EXPECT_EQ(&browser::PopupList(form), &form.LV);
    EXPECT_EQ(browser::SelectedPath(browser::PopupList(form)), "/m/two.mp3");
}

TEST_F(ListRows, ADoubleClickPlaysARowWhoseFileIsNotThereTooAndLeavesTheListAsItIs)
{
    MainForm &form = Opened();
    form.LV.SelectOnly(0);
    form.LV.onDblClick();
    EXPECT_EQ(played, "/m/one.mp3"); // the player reports that the file does not exist
    EXPECT_EQ(form.LV.Count(), 2);
}

TEST_F(ListRows, AColumnSortsThem)
{
    MainForm &form = Opened();
    form.LV.onColumnClick(2);
    form.LV.onColumnClick(2);
    EXPECT_TRUE(form.LV.Descending());
    EXPECT_EQ(form.LV.RowAt(0), 0); // "One & only" is after "/m/two"
}

} // namespace
