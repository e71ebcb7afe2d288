// browser/form/formclose.h - what happens when frmMain closes, and the end of the program.
#pragma once

#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// The key of the setting "1" for a maximised window, in section shell::kWindowsSize.
inline constexpr std::string_view kMaximised = "Maximised";

// Closes the window, if all other windows allow it (their mayClose). During a regeneration, that is
// ended at its next file first. submnuExit and the window's close button do this.
void CloseMainForm(MainForm &form);

// Saves in the preferences: the window's place and size, whether it is maximised, and the tree's
// width. For a maximised window, the place is the one that it has otherwise.
void SavePlacement(const MainForm &form);

// Form_Unload, step by step; ends the program through the calls.
void UnloadMainForm(MainForm &form);

} // namespace browser
