// browser/form/formclose.h - what happens when frmMain closes, and the end of the program.
#pragma once

#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// The key, in the section shell::kWindowsSize, of the setting that is "1" when the window is
// maximised.
inline constexpr std::string_view kMaximised = "Maximised";

// Closes the window, if all other windows allow it (their mayClose). A running regeneration or
// export is first ended at its next file. The command submnuExit and the window's close button call
// this.
void CloseMainForm(MainForm &form);

// Saves in the preferences: the window's place and size, whether it is maximised, and the tree's
// width. For a maximised window, the place is the one that it has otherwise.
void SavePlacement(const MainForm &form);

// Form_Unload: saves the placement, releases what the form has set elsewhere, closes the other
// windows, and ends the program (MainFormCalls::endProgram).
void UnloadMainForm(MainForm &form);

} // namespace browser
