// browser/formhandlers.h - parts of LoadMainForm, called by formload.cpp.
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

} // namespace browser
