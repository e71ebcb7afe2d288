// browser/form/formcommands.h - the commands that frmMain handles itself, its keys and its language
// menu.
#pragma once

#include "browser/mainform.h"

#include <string>
#include <string_view>
#include <vector>

namespace browser
{

// Registers the commands that the form itself handles.
void RegisterOwnCommands(MainForm &form);

// Form_KeyDown. `keyCode`: the ASCII code of a digit, 27 for Escape; `alt`: Alt is pressed.
// Returns: true when the key was handled.
bool Form_KeyDown(MainForm &form, int keyCode, bool alt);

// Sets the entries of the language menu: the names of the language files without their extension,
// in the order of the folder. When there are none, the separator `hyLang` and the first entry are
// hidden.
void BuildLanguageMenu(MainForm &form, const std::vector<std::string> &captions);

// ListRefresh, then LoadTreeView(""). Does nothing during a regeneration. If the user has closed
// the window meanwhile, that is done instead of loading the tree. Errors: those of ListRefresh.
void RegenerateAndLoad(MainForm &form, bool showProgress);

} // namespace browser
