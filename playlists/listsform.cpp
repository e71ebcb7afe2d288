#include "playlists/listsform.h"

#include "playlists/lists.h"

#include <algorithm>

namespace playlists
{

namespace
{

constexpr ui::Caption kCaptions[] = {
    {"", "CommonDialogs", "RemovePlayLists", "Remove PlayList"},
    {"cmdRemove", "CommonDialogs", "RemoveButton", "&Remove"},
    {"cmdDone", "CommonDialogs", "DoneButton", "&Done"},
    {"LV", "ColumnHeaders", "PlayLists", "PlayLists", ui::Caption::Of::SpokenName},
};

} // namespace

ListsForm::ListsForm(browser::MainForm &mainForm)
    : Form("frmLists", kCaptions), m_mainForm(mainForm)
{
    Add("LV", LV);
    Add("cmdRemove", cmdRemove);
    Add("cmdDone", cmdDone);
    acceptButton = &cmdDone;
    cancelButton = &cmdDone;
    size = {0, 0, 5000, 4500};
    resizable = true;
    layout = ui::Column({ui::Filled(LV), ui::Row({ui::Room(), cmdRemove, cmdDone})});
    cmdRemove.onClick = [this] { cmdRemove_Click(); };
    cmdDone.onClick = [this] { ui::Close(*this); };
}

void ListsForm::RemoveEm()
{
    LV.ClearRows();
    LV.ClearColumns();
    LV.AddColumn("Unique", "", 2000);
    LV.HideHeaders(true); // the headers have no text
    int position = 0;
    for (const std::string &list : PlayListNames())
        LV.AddRow("A" + std::to_string(++position), list, "M3U", {});
    cmdRemove.SetEnabled(LV.Count() > 0);
    if (LV.Count() > 0)
        LV.SelectOnly(LV.RowAt(0));
    ui::ShowModal(*this);
}

void ListsForm::cmdRemove_Click()
{
    const ui::RowId row = LV.SelectedItem();
    if (row == ui::kNoRow)
        return;
    const std::string key(LV.Key(row));
    const int place = LV.DisplayIndex(row);
    if (!RemovePlayList(m_mainForm, std::string(LV.Text(row))))
        return;
    if (const ui::RowId left = LV.Find(key); left != ui::kNoRow)
        LV.RemoveRow(left);
    if (LV.Count() > 0) // selects the next one, so that the keyboard can be used again
        LV.SelectOnly(LV.RowAt(std::min(place, LV.Count() - 1)));
}

void ShowLists(browser::MainForm &mainForm)
{
    ListsForm form(mainForm);
    form.RemoveEm();
}

} // namespace playlists
