// shell/openaddress.h - handing what the program does not show itself to the desktop.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace shell
{

// Whether the desktop may be given `address`: a full path, or an address of the schemes http, https
// and mailto. Nothing else is, whatever the web, a tag or a setting says: no other scheme, and no
// text that a program could take for an option.
bool MayOpen(std::string_view address);

// Has the desktop open `address`, a path or an address (http:, https:, mailto:), with
// `workingFolder` as the folder of the opened program where the platform has such a thing. Where
// nothing opens it, or it may not be opened, no box comes: the address is put on the clipboard, and
// the status line says so. Errors: none.
void OpenAddress(const std::string &address, const std::string &workingFolder);

// The same for the address of a mail (mailto:) whose body is on the clipboard already: that stays
// there.
void OpenMail(const std::string &address, const std::string &workingFolder);

// Shows a line to the user where no box is to come. The main window fills it in while it is there;
// empty: nothing is shown.
std::function<void(std::string_view)> &TheStatusLine();

} // namespace shell
