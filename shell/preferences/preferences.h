// shell/preferences/preferences.h - frmPref, the window with the folder to catalogue and the flags
// of the section "Preferences": its load, the events of the tree, of the path's text box and of the
// buttons, and the menu's command.
#pragma once

#include "shell/preferences/preferenceschoices.h"
#include "ui/cDirTree.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace shell
{

struct PreferencesForm : PreferencesChoices {
    PreferencesForm();

    // --- Hidden controls.
    std::vector<std::string> Files; // the names of its MP3 files
    std::unique_ptr<ui::cDirTree> dirTree;

    // --- What the window does. An empty function does nothing.
    std::function<void()> unload;         // closes the window
    std::function<bool()> addDesktopIcon; // see ui::DirTreeHost

    // --- Fields.
    std::string folderBefore; // the current folder of the process before the window
    bool loading = false;     // the tree is being filled and must not change DirList
    bool waiting = false;     // waits for a disk, with events running
    bool abandoned = false;   // the user closed the window during that wait; it closes right after
};

// Form_Load, step by step.
void LoadPreferences(PreferencesForm &form);

// The selection of the tree may have changed: its folder is copied to DirList, to `txtPath` and to
// the main window's `MP3s`. When it cannot be read, the former folder is selected again. The nodes
// of the desktop and of the computer change nothing.
void DirTree_ChangePath(PreferencesForm &form);

// Handles a key in `txtPath`. Enter (13) opens the tree at the folder that was typed. "~" is the
// home folder; a relative path begins at the current folder of the process.
// Returns: true when the key was Enter, which the box must not get.
// Errors: kPathNotFound, kPathFileAccess with the path; the text stays.
bool txtPath_KeyPress(PreferencesForm &form, int key);

// Leaving the box does what Enter does. A text that is not a folder stays in the box; Apply reports
// it.
void txtPath_LostFocus(PreferencesForm &form);

// Does what Enter in `txtPath` does, then ApplyChoices. Does nothing during a regeneration and
// while the tree waits for a disk. Errors: those of both.
void cmdApply_Click(PreferencesForm &form);

void cmdOk_Click(PreferencesForm &form); // applies, then closes
void cmdCancel_Click(PreferencesForm &form);

// Whether the window can close now. It cannot while a regeneration runs. While the window waits for
// a disk, this ends the wait, and the window closes by itself a moment later.
bool MayUnloadPreferences(PreferencesForm &form);

// Form_Unload: sets the current folder of the process back.
void UnloadPreferences(PreferencesForm &form);

// submnuPreferences: shows the window with `showModally`, then regenerates the catalogue when the
// stored folder is not the same as before; letter case counts.
void submnuPreferences_Click(const std::function<void()> &showModally);

// Registers the menu's command. It is disabled while a regeneration runs.
void InstallPreferences();

} // namespace shell
