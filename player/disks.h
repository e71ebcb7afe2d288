// player/disks.h - words for the disks that songs are on. No state.
#pragma once

#include <string>

namespace player
{

// The word for the kind of drive that a path is on: "Removable", "Fixed", "Remote Disk", "CD-ROM",
// "RAM Disk"; "Removable" when the medium is not mounted; empty for any other kind.
std::string GetDriveTypeName(const std::string &path);

} // namespace player
