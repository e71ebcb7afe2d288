#include "player/disks.h"

#include "platform/disk/drives.h"
#include "platform/machine.h"

namespace player
{

std::string GetDriveTypeName(const std::string &path)
{
    platform::Drives &drives = *platform::TheMachine().drives;
    if (drives.IsMediumMissing(path))
        return "Removable"; // nothing more is known about a medium that is not mounted
    switch (drives.TypeOf(drives.DriveOf(path))) {
    case platform::DriveType::Removable:
        return "Removable";
    case platform::DriveType::Fixed:
        return "Fixed";
    case platform::DriveType::Remote:
        return "Remote Disk";
    case platform::DriveType::CdRom:
        return "CD-ROM";
    case platform::DriveType::RamDisk:
        return "RAM Disk";
    case platform::DriveType::Unknown:
    case platform::DriveType::NoRoot:
        break;
    }
    return {};
}

} // namespace player
