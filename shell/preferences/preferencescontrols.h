// shell/preferences/preferencescontrols.h - the controls of frmPref: their names, their captions
// and their layout. What they do: preferences.h.
#pragma once

#include "ui/controls/form.h"

#include <array>

namespace shell
{

struct PreferencesControls : ui::Form {
    PreferencesControls();

    ui::Frame frmMP3;
    ui::Label lblFolder;
    ui::TextBox txtPath;
    ui::Label lblFolders;
    ui::KeyedTree tvwDirTree;
    ui::Label lblFiles;
    ui::KeyedList LV; // the MP3 files of the folder that was opened in the tree
    ui::CheckBox chkDeleteTable;
    ui::Frame frmEditingTags;
    ui::CheckBox chkDoBackUp;
    ui::CheckBox chkUpdateDB;
    ui::Frame frmSeekBy;
    std::array<ui::CheckBox, 7> LoadTreeOpt; // for the first seven FieldNames; "Path" has none
    ui::Frame frmAutomatic;
    ui::CheckBox chkAutoCheck;
    ui::CheckBox Reload;
    ui::CheckBox chkAutoShow;
    ui::Button cmdOk, cmdCancel, cmdApply;
    ui::ProgressBar PBar;                 // for a regeneration that was started here
    ui::Label lblProgress{"", {}, false}; // the file that the regeneration is reading
    ui::Timer tmrUnload{50}; // closes the window as soon as there is no wait for a disk
};

} // namespace shell
