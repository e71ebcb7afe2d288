// platform/disk/drives.h - the drives on which files are: their kind and their label.
#pragma once

#include <string>
#include <vector>

namespace platform
{

enum class DriveType {
    Unknown = 0,
    NoRoot = 1,
    Removable = 2,
    Fixed = 3,
    Remote = 4,
    CdRom = 5,
    RamDisk = 6
}; // values of settings and tests since the first version: do not renumber

struct Drives {
    virtual ~Drives() = default;

    // The drive of a path: its mount point ("/media/stick"), without a trailing separator unless
    // it is the root itself. `path` need not exist; its nearest existing folder counts.
    virtual std::string DriveOf(const std::string &path) = 0;

    // The kind of the drive. Errors: none; Unknown when it cannot be determined.
    virtual DriveType TypeOf(const std::string &drive) = 0;

    // The drive's volume label as text (UTF-8); empty when it has none or it cannot be read.
    virtual std::string LabelOf(const std::string &drive) = 0;

    // Whether the path is on a removable medium that is not mounted now.
    virtual bool IsMediumMissing(const std::string & /*path*/) { return false; }

    // The serial number of the drive's file system as decimal text; empty when it cannot be read.
    virtual std::string SerialOf(const std::string &drive) = 0;

    // The drives that a user knows: the root, the home folder, then the disks, shares and media
    // that are mounted for users, in the order of their paths; each once. File systems of the
    // operating system itself (/proc, /sys) are left out.
    virtual std::vector<std::string> Roots() = 0;
};

} // namespace platform
