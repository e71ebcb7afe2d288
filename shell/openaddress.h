// shell/openaddress.h - opens folders, files and web addresses with the programs of the desktop.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace shell
{

// Whether `address` may be passed to the desktop: a full path, or an address that begins with
// http://, https:// or mailto:. Anything else is refused, whether it comes from the web, a tag or a
// setting: another scheme, or a text that a program could read as an option.
bool MayOpen(std::string_view address);

// Makes the desktop open `address`, see MayOpen. `workingFolder` is the current folder of the
// opened program, on platforms that have this. When nothing can open the address, or MayOpen
// refuses it, no box is shown: the address is put on the clipboard, and the status line says so.
// Errors: none.
void OpenAddress(const std::string &address, const std::string &workingFolder);

// The same for the address of a mail (mailto:) when the mail's text is on the clipboard already;
// the clipboard is not changed.
void OpenMail(const std::string &address, const std::string &workingFolder);

// Shows a line to the user without a box. The main window sets it while it exists; when it is
// empty, nothing is shown.
std::function<void(std::string_view)> &TheStatusLine();

} // namespace shell
