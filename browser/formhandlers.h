// browser/formhandlers.h - parts of the main form's load that mainform.cpp calls.
#pragma once

#include "browser/mainform.h"

namespace browser
{

// Puts the form's own commands into `handlers`, each under its name + "_Click".
void BindHandlers(MainForm &form);

// Builds `cp` from the popup's table, in the user's language.
void BuildPopup(MainForm &form);

} // namespace browser
