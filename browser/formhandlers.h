// browser/formhandlers.h - parts of the main form's load that formload.cpp calls.
#pragma once

#include "browser/mainform.h"

namespace browser
{

// Registers the form's own commands.
void RegisterOwnCommands(MainForm &form);

// Builds `cp` from the popup's table, in the user's language.
void BuildPopup(MainForm &form);

// Brings the states of the popup's entries up to date.
void UpdatePopup(MainForm &form);

} // namespace browser
