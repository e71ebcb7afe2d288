// browser/form/formhandlers.h - parts of LoadMainForm, called by formload.cpp, and the check of its
// result.
#pragma once

#include "browser/mainform.h"

namespace browser
{

// Registers the commands that the form itself handles.
void RegisterOwnCommands(MainForm &form);

// Builds `cp` from the table of the popup, in the user's language.
void BuildPopup(MainForm &form);

// Updates the states of the popup's entries.
void UpdatePopup(MainForm &form);

// Checks, after LoadMainForm, that something has registered each visible entry of the menus, each
// entry of the popup, and the kinds of rows that other areas open. A program that was built with
// its tests does this at its start: an area whose Install was forgotten would only leave disabled
// entries. Errors: kMemberNotFound with all names that are missing.
void CheckRegistrations(MainForm &form);

} // namespace browser
