// browser/form/formload.h - what happens while frmMain loads, until it is shown.
#pragma once

#include "browser/mainform.h"

namespace browser
{

// Form_Load. Registers the form's own commands and reads the language file; the panel is empty and
// the file commands are disabled. Errors: kObjectNotSet when one of the calls is missing.
void LoadMainForm(MainForm &form);

// Two steps of the program's start. ApplyPreferences sets the check mark of WebStyle and empties
// the address; ShowTreeAndList shows tree and list and sets the size of the window.
void ApplyPreferences(MainForm &form);
void ShowTreeAndList(MainForm &form);

// After the splash: icon, folder name "Quenlin", the stored place (moved onto a screen), the
// player's timer, the window, the tips, the layout.
void ShowMainForm(MainForm &form);

} // namespace browser
