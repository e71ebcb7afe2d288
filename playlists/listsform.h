// playlists/listsform.h - frmLists: the window in which play lists are removed.
#pragma once

#include "browser/mainform.h"
#include "ui/controls/form.h"

namespace playlists
{

struct ListsForm : ui::Form {
    // Nodes are removed from the tree of `mainForm`, which outlives this window.
    explicit ListsForm(browser::MainForm &mainForm);

    ui::KeyedList LV; // rows "A1", "A2", ...; the main text is the name of the list
    ui::Button cmdRemove{"&Remove"}, cmdDone{"&Done"};

    // Fills the window and shows it modally. cmdRemove is enabled if there is a list; it stays
    // enabled when the last one has been removed.
    void RemoveEm();

private:
    void cmdRemove_Click();

    browser::MainForm &m_mainForm;
};

// submnuRemovePlayList_Click.
void ShowLists(browser::MainForm &mainForm);

} // namespace playlists
