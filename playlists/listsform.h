// playlists/listsform.h - frmLists: the lists of the registry, to remove some of them.
#pragma once

#include "browser/mainform.h"
#include "ui/controls/form.h"

namespace playlists
{

struct ListsForm : ui::Form {
    // `mainForm` is the one whose tree loses the nodes; it outlives the window.
    explicit ListsForm(browser::MainForm &mainForm);

    ui::KeyedList LV; // rows "A1", "A2", ...; the main text is the list's name
    ui::Button cmdRemove{"&Remove"}, cmdDone{"&Done"};

    // Fills the window and shows it modally. cmdRemove is enabled when there is a list; it stays so
    // when the last one is gone.
    void RemoveEm();

private:
    void cmdRemove_Click();

    browser::MainForm &m_mainForm;
};

// submnuRemovePlayList_Click.
void ShowLists(browser::MainForm &mainForm);

} // namespace playlists
