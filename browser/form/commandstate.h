// browser/form/commandstate.h - runs the commands of frmMain by name, and shows which of them can
// run.
#pragma once

#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// The first entry of the language menu: each language file registers its own entry.
inline constexpr std::string_view kFirstLanguage = "submnuLng(0)";

// A click on a menu entry or a toolbar button: runs the command of that name (browser/commands.h).
// Does nothing when it is disabled.
// Errors: kMemberNotFound for an unknown name; those of the handler.
void RunCommand(MainForm &form, std::string_view name);

// Updates the state of every entry and button. An entry is enabled when its command can run and,
// for a file command, a file is selected; a sub-menu, when one of its entries is enabled.
void UpdateCommands(MainForm &form);

// Enables or disables the four file commands and their buttons; one without a handler stays
// disabled.
void SetFileCommandsEnabled(MainForm &form, bool enabled);

// Checks, after LoadMainForm, that something has registered each visible entry of the menus, each
// entry of the popup and the kinds of rows that other areas open, and that the timers of other
// areas have their events. A program that was built with its tests does this at its start: an area
// whose Install was forgotten would only leave disabled entries.
// Errors: kMemberNotFound with all names that are missing.
void CheckRegistrations(MainForm &form);

} // namespace browser
