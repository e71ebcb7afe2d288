// platform/posix/disk/mountdrives.h - drives as mount points.
#pragma once

#include "platform/disk/drives.h"
#include "platform/disk/userfolders.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace platform::posix
{

// One mounted file system, in the words of the kernel's table.
struct Mount {
    std::string device; // "8:1", major and minor number
    std::string point;  // the mount point
    std::string type;   // "ext4"
    std::string source; // "/dev/sda1", "server:/export"
};

// The mounts of a table in the form of /proc/self/mountinfo (proc(5)), in its order; a line with
// another form is ignored.
std::vector<Mount> ParseMounts(std::string_view mountInfo);

// Results are kept until the kernel reports a change of its mount table, so that a second call for
// a file of the same folder takes one system call.
class MountDrives : public Drives
{
public:
    // The folders in which the kernel describes the disks; tests use others.
    struct Places {
        std::string mountInfo = "/proc/self/mountinfo";
        std::string blockDevices = "/sys/dev/block"; // by "major:minor"
        std::string labels = "/dev/disk/by-label";
        std::string home = HomeFolder(); // of the user
        // Mounts in these folders, and below them, belong to the operating system.
        std::vector<std::string> machineFolders = {"/boot",  "/dev",  "/efi", "/etc",  "/lib",
                                                   "/lib64", "/proc", "/run", "/snap", "/sys",
                                                   "/tmp",   "/usr",  "/var"};
        // The folders in which removable media are mounted: directly, or in a folder for each user.
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

    // The label in the file system itself, else the name under which the operating system lists the
    // device. Remote drives are not examined: when a server does not answer, the program would
    // wait. If the home folder is not a mount point, its label is its name.
    std::string LabelOf(const std::string &drive) override;

    // Decided by the place of the path in the folders for media: nothing is mounted there for it,
    // and its folder is missing or empty.
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
    int m_table = -1; // the open mount table; poll reports changes of it
    bool m_known = false;
    std::vector<Mount> m_mounts;
    std::map<std::string, DriveType> m_types;    // by drive
    std::map<std::string, std::string> m_labels; // by drive
    std::string m_lastFolder, m_lastDrive;       // the last answer of DriveOf
};

} // namespace platform::posix
