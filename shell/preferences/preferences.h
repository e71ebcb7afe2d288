// shell/preferences/preferences.h - frmPref: the folder to catalogue and the flags of section
// "Preferences"; what load, the tree, the path's box and the buttons do with them.
#pragma once

#include "ui/cDirTree.h"
#include "ui/controls/form.h"
#include "ui/controls/progressbar.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace shell
{

struct PreferencesForm : ui::Form {
    PreferencesForm();

    // --- Controls.
    ui::Frame frmMP3{"MP3 Directory"};
    ui::Label lblFolder{"&Folder:"};
    ui::TextBox txtPath;
    ui::Label lblFolders{"Fol&ders:"};
    ui::KeyedTree tvwDirTree;
    ui::Label lblFiles{"&MP3 files:"};
    ui::KeyedList LV; // the MP3 files of the folder that the tree was opened at
    ui::CheckBox chkDeleteTable{"Delete table before append"};
    ui::Frame frmEditingTags{"Editing Tags"};
    ui::CheckBox chkDoBackUp{"Back Files before editing"};
    ui::CheckBox chkUpdateDB{"Update DB after editing"};
    ui::Frame frmSeekBy{"Seek By"};
    std::array<ui::CheckBox, 7> LoadTreeOpt; // of the first seven FieldNames; none for "Path"
    ui::Frame frmAutomatic{"Automatic"};
    ui::CheckBox chkAutoCheck{"Check for newer version at startup"};
    ui::CheckBox Reload{"Generate DB at startup"};
    ui::CheckBox chkAutoShow{"Show Lyrics when song changes"};
    ui::Button cmdOk{"&OK"}, cmdCancel{"&Cancel"}, cmdApply{"&Apply"};
    ui::ProgressBar PBar;                 // of a regeneration that was started here
    ui::Label lblProgress{"", {}, false}; // the file that it is at

    // --- Hidden controls.
    std::string DirList;            // the folder in the box: a path, byte for byte
    std::vector<std::string> Files; // the names of its MP3 files
    std::unique_ptr<ui::cDirTree> dirTree;
    ui::Timer tmrUnload{50}; // closes the window as soon as no disk is waited for

    // --- What the window does. An empty one does nothing.
    std::function<void()> unload;         // closes the window
    std::function<bool()> addDesktopIcon; // see ui::DirTreeHost

    // --- Fields.
    std::string standIn;       // DirList where it stands in for a folder that is not there
    std::string folderBefore;  // the process's current folder before the window
    bool loading = false;      // the tree is being filled, and does not move DirList
    bool regenerating = false; // a regeneration that was started here is under way
};

// The folder that the window starts at. `isStandIn`: it stands in for the stored folder, which is
// not there, and is not to be taken as the user's choice.
struct StartFolder {
    std::string path;
    bool isStandIn = false;
};

// The stored folder where it is there, else its nearest parent that is. Where none is stored: the
// user's music folder, else the home, else the root; the choice of a newcomer while the catalogue
// is empty.
StartFolder FindStartFolder();

// Form_Load, in its order.
void LoadPreferences(PreferencesForm &form);

// The tree's selection may have changed: its folder goes to DirList, and from there to `txtPath`
// and the main window's `MP3s`. One that cannot be read brings the selection back; the desktop and
// the computer change nothing.
void DirTree_ChangePath(PreferencesForm &form);

// A key in `txtPath`. Enter (13) opens the tree at the folder that was typed: true, the key goes no
// further. "~" is the home; other paths start at the process's current folder.
// Errors: kPathNotFound, kPathFileAccess with the path; the text stays.
bool txtPath_KeyPress(PreferencesForm &form, int key);

// Leaving the box counts as Enter. What is no folder stays in the box, until Apply tells of it.
void txtPath_LostFocus(PreferencesForm &form);

// Saves everything: a change of folder regenerates the catalogue first, then each setting is
// stored and set, then each field whose flag differs is loaded into the tree or removed from it.
// Errors: as Enter in `txtPath`, and those of the regeneration; `MP3Directory` and
// `DeleteBeforeAppend` then have their former values.
void cmdApply_Click(PreferencesForm &form);

void cmdOk_Click(PreferencesForm &form); // applies, then closes
void cmdCancel_Click(PreferencesForm &form);

// New folder, of the tree's popup: asks for a name and makes the folder of that name in the folder
// of the selected node, which then shows it.
// Errors: kFileExists when the name is taken, else FileError, each with the path; nothing is made.
void NewFolder(PreferencesForm &form);

// Whether the window may close now. Not while a regeneration runs; while a disk is waited for, that
// wait is ended and the window closes by itself right after.
bool MayUnloadPreferences(PreferencesForm &form);

// Form_Unload: puts the process's current folder back.
void UnloadPreferences(PreferencesForm &form);

// submnuPreferences: shows the window by `showModally`, then regenerates the catalogue when the
// stored folder is another than before, letter case included.
void submnuPreferences_Click(const std::function<void()> &showModally);

// Registers the command of the menu. While a regeneration runs it is disabled.
void InstallPreferences();

} // namespace shell
