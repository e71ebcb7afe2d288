// online/help/help.h - opens the help in its window, in the language in use, or in English when
// there is none in that language. The help is a file in the program's folder: it needs no network.
#pragma once

#include "online/help/helpbook.h"

#include <string>
#include <string_view>

namespace online
{

// The path (bytes) of the help file: the name of the language file with the ending ".hlp" when that
// exists, else TheGlobals().HelpFilePath.
std::string HelpFile();

// The help of that file. Errors: kFileNotFound, with the name, when it cannot be read.
HelpBook ReadHelpBook();

// Shows the page with this id; the contents when the id is empty or no page has it.
// Errors: those of ReadHelpBook.
void ShowHelp(std::string_view id = {});

// Shows the page about the text of a message box, if there is one, else the page of the window with
// the name `window`.
// Errors: those of ShowHelp.
void ShowHelpOf(std::string_view window, std::string_view message);

// Closes the help's window. To be called before the ports are destroyed.
void ForgetHelp();

} // namespace online
