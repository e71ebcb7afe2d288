// platform/posix/mountdrives.h - drives as mount points.
#pragma once

#include "platform/drives.h"
#include "platform/posix/userfolders.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace platform::posix
{

// One mounted file system, as the kernel's table has it.
struct Mount {
    std::string device; // "8:1", major and minor number
    std::string point;  // the mount point
    std::string type;   // "ext4"
    std::string source; // "/dev/sda1", "server:/export"
};

// The mounts of a table in the form of /proc/self/mountinfo (proc(5)), in its order; a line that
// has not that form is passed over.
std::vector<Mount> ParseMounts(std::string_view mountInfo);

// Answers are kept until the kernel reports a change of its mount table, so that asking again for
// a file of the same folder costs one system call.
class MountDrives : public Drives
{
public:
    // Where the machine describes its disks; other places are for tests.
    struct Places {
        std::string mountInfo = "/proc/self/mountinfo";
        std::string blockDevices = "/sys/dev/block"; // by "major:minor"
        std::string labels = "/dev/disk/by-label";
        std::string home = HomeFolder(); // of the user
        // Where the machine mounts what is its own, with all that is below.
        std::vector<std::string> machineFolders = {"/boot",  "/dev",  "/efi", "/etc",  "/lib",
                                                   "/lib64", "/proc", "/run", "/snap", "/sys",
                                                   "/tmp",   "/usr",  "/var"};
        // Where removable media are mounted: in a folder of the user's, or in the folder itself.
        std::vector<std::string> userMedia = {"/media", "/run/media"};
        std::vector<std::string> media = {"/mnt"};
    };

    MountDrives();
    explicit MountDrives(Places places);
    ~MountDrives() override;
    MountDrives(const MountDrives &) = delete;
    MountDrives &operator=(const MountDrives &) = delete;

    std::string DriveOf(const std::string &path) override;

    // Network file systems are Remote, those in memory RamDisk, those of optical disks CdRom; the
    // rest is Removable when the device says so, else Fixed.
    DriveType TypeOf(const std::string &drive) override;

    // The file system's own answer, else the name under which the system lists the device. Remote
    // drives are not asked: a server that is gone would hold the program. The home folder that is
    // no mount point has its own name as its label.
    std::string LabelOf(const std::string &drive) override;

    // By its place among the folders for media: nothing is mounted for it there, and its folder is
    // missing or empty.
    bool IsMediumMissing(const std::string &path) override;

    std::string SerialOf(const std::string &drive) override;

    std::vector<std::string> Roots() override;

private:
    void Refresh(); // reads the table again when the kernel reported a change
    const Mount *FindMount(std::string_view drive) const;
    bool IsUsersDrive(const Mount &mount) const;
    DriveType TypeOfMount(const Mount &mount) const;
    std::string LabelOfMount(const Mount &mount) const;
    std::string DeviceOf(const Mount &mount) const;

    Places m_places;
    int m_table = -1; // the open mount table; its poll reports changes
    bool m_known = false;
    std::vector<Mount> m_mounts;
    std::map<std::string, DriveType> m_types;    // by drive
    std::map<std::string, std::string> m_labels; // by drive
    std::string m_lastFolder, m_lastDrive;       // the last answer of DriveOf
};

} // namespace platform::posix
