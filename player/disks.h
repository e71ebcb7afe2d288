// player/disks.h - the disks that songs are on, in words. No state.
#pragma once

#include <string>

namespace player
{

// The word for the kind of the drive that a path is on: "Removable", "Fixed", "Remote Disk",
// "CD-ROM", "RAM Disk"; "Removable" for a path on a medium that is not mounted, empty for any other
// kind.
std::string GetDriveTypeName(const std::string &path);

} // namespace player
