#include "tests/browser/formfixture.h"

namespace
{

using namespace browser;

class Popup : public tests::FormTest
{
protected:
    MainForm &WithRows()
    {
        MainForm &form = Loaded();
        form.LV.SetSubItemKeys({"Path"});
        for (const char *key : {"/0", "/1", "#ABBA"}) {
            const std::string_view cell = key;
            form.LV.AddRow(key, "", "", {&cell, 1});
        }
        form.calls.showPopup = [this](int left, int top) {
            ++shown;
            place = {left, top};
        };
        return form;
    }
    int shown = 0;
    std::pair<int, int> place;
};

TEST_F(Popup, OpensOnlyForTheRightButtonOverAFile)
{
    const struct {
        const char *name;
        int button;
        ui::RowId hit, selected;
        int shown;
        ui::RowId selectedAfter;
    } cases[] = {
        {"left button", 1, 0, 1, 0, 1},
        {"on another row", 2, 0, 1, 1, 0},
        {"on a folder", 2, 2, 1, 0, 2},
        {"on empty space, a file selected", 2, ui::kNoRow, 1, 1, 1},
        {"on empty space, a folder selected", 2, ui::kNoRow, 2, 0, 2},
        {"on empty space, nothing selected", 2, ui::kNoRow, ui::kNoRow, 0, ui::kNoRow},
    };
    MainForm &form = WithRows();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        shown = 0;
        form.PopupFromSearch = true;
        if (c.selected == ui::kNoRow)
            form.LV.SetSelection({}, ui::kNoRow);
        else
            form.LV.SelectOnly(c.selected);
        LV_MouseDown(form, c.button, c.hit);
        EXPECT_EQ(shown, c.shown);
        EXPECT_EQ(form.LV.SelectedItem(), c.selectedAfter);
        EXPECT_EQ(form.PopupFromSearch, c.shown == 0);
    }
}

TEST_F(Popup, ARightClickDeselectsAllOtherRows)
{
    MainForm &form = WithRows();
    const ui::RowId rows[] = {0, 1, 2};
    form.LV.SetSelection(rows, 2);
    int clicks = 0;
    form.LV.onItemClick = [&] { ++clicks; };
    LV_MouseDown(form, 2, 1);
    EXPECT_EQ(form.LV.SelectedCount(), 1);
    EXPECT_TRUE(form.LV.IsSelected(1));
    EXPECT_EQ(clicks, 1) << "the panel follows";
}

TEST_F(Popup, IsBesideTheCursorWithItsStrip)
{
    MainForm &form = WithRows();
    form.window = {100, 200, 12150, 7350};
    form.calls.cursor = [] { return ui::Rect{5000, 6000, 0, 0}; };
    form.calls.popupHeights = [] { return std::vector<int>{20, 22, 22}; };
    std::size_t bands = 0;
    form.logo->DrawingObject = [&](const ui::StripPlan &plan) { bands = plan.bands.size(); };
    ShowPop(form);
    EXPECT_EQ(place, std::make_pair(4700, 5000));
    EXPECT_EQ(form.picSideBar.Height(), 64 * 15);
    EXPECT_EQ(bands, 65U);
}

TEST_F(Popup, RunsTheCommandsThatAreRegistered)
{
    MainForm &form = WithRows();
    std::string ran;
    form.LV.SelectOnly(1);
    ClickPopup(form, "Rename");
    ShowPop(form);
    for (const PopupEntry &entry : form.cp)
        EXPECT_EQ(entry.enabled, entry.key == "fOptions") << entry.key;
    RegisterCommand("cp_Export", [&] { ran += "export "; });
    RegisterCommand("submnuDuplicateEntry", [&] { ran += "duplicate "; });
    bool canPlay = false;
    RegisterCommand(
        "cp_Play", [&] { ran += "play "; }, [&] { return canPlay; });
    ShowPop(form);
    const auto enabled = [&form] {
        std::string keys;
        for (const PopupEntry &entry : form.cp)
            keys += entry.enabled && !entry.image.empty() ? entry.key + " " : "";
        return keys;
    };
    EXPECT_EQ(enabled(), "Export Rename Duplicate ");
    ClickPopup(form, "Play");
    canPlay = true;
    ShowPop(form);
    EXPECT_EQ(enabled(), "Export Rename Duplicate Play ");
    // A command of the popup runs also while the menu entry of the same name is disabled.
    EXPECT_FALSE(form.FindMenu("submnuDuplicateEntry")->Enabled());
    for (const char *key : {"Rename", "Export", "Duplicate", "Play", "fOptions", "nothing"})
        ClickPopup(form, key);
    EXPECT_EQ(ran, "export export duplicate play ");
}

TEST_F(Popup, ItsCommandsWorkOnTheListThatItWasOpenedFrom)
{
    MainForm &form = WithRows();
    EXPECT_EQ(&PopupList(form), &form.LV);
    ui::KeyedList found;
    form.searchList = &found;
    EXPECT_EQ(&PopupList(form), &form.LV);
    form.PopupFromSearch = true;
    EXPECT_EQ(&PopupList(form), &found);
    form.searchList = nullptr; // the window was closed meanwhile
    EXPECT_EQ(&PopupList(form), &form.LV);
}

} // namespace
