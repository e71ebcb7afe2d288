// shell/openaddress.h - handing what the program does not show itself to the desktop.
#pragma once

#include <string>

namespace shell
{

// Has the desktop open `address`, a path or an address (http:, mailto:), with `workingFolder` as
// the folder of the opened program where the platform has such a thing. Where nothing opens it a
// box says so and names it, so that no click is a dead one. Errors: none.
void OpenAddress(const std::string &address, const std::string &workingFolder);

} // namespace shell
