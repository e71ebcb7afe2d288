// online/help.h - opens the help in its window: the book of the language in use, or the English one
// where that language has none. The book is a file of the program's folder, so that it needs no
// network.
#pragma once

#include "online/helpbook.h"

#include <string>
#include <string_view>

namespace online
{

// The file of the book: that of the language file's name with the ending ".hlp" where there is
// one, TheGlobals().HelpFilePath otherwise. A path, byte for byte.
std::string HelpFile();

// The book of that file. Errors: kFileNotFound, with its name, when it cannot be read.
HelpBook ReadHelpBook();

// Shows the page with this id; the contents for an empty id, and for one that no page has.
// Errors: those of ReadHelpBook.
void ShowHelp(std::string_view id = {});

// Shows the page about a message that a box shows, if there is one, else the page of the window.
// Errors: those of ShowHelp.
void ShowHelpOf(std::string_view window, std::string_view message);

// Ends the help's window, before the ports go.
void ForgetHelp();

} // namespace online
