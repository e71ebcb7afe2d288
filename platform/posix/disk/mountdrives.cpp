#include "platform/posix/disk/mountdrives.h"

#include "platform/disk/wholefiles.h"
#include "platform/posix/disk/descriptor.h"
#include "runtime/text.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::size_t kMaxTableBytes = 16u << 20;

constexpr std::array<std::string_view, 17> kRemoteTypes = {
    "nfs",         "nfs4",           "cifs",        "smb3",           "smbfs",
    "9p",          "virtiofs",       "afs",         "ceph",           "fuse.sshfs",
    "fuse.rclone", "fuse.glusterfs", "fuse.davfs2", "fuse.curlftpfs", "fuse.gvfsd-fuse",
    "ncpfs",       "fuse.s3fs"};
constexpr std::array<std::string_view, 3> kMemoryTypes = {"tmpfs", "ramfs", "rootfs"};

// Mounts in this folder are the user's, although it is in a folder of the operating system.
constexpr std::string_view kUsersMedia = "/run/media";

// Decodes a field of the kernel's table: "\040" (a back-slash and three octal digits) means one
// byte.
std::string Unescaped(std::string_view field)
{
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string result;
    for (std::size_t at = 0; at < field.size(); ++at) {
        if (field[at] == '\\' && at + 3 < field.size() && isOctal(field[at + 1]) &&
            isOctal(field[at + 2]) && isOctal(field[at + 3])) {
            result.push_back(static_cast<char>((field[at + 1] - '0') * 64 +
                                               (field[at + 2] - '0') * 8 + (field[at + 3] - '0')));
            at += 3;
        } else {
            result.push_back(field[at]);
        }
    }
    return result;
}

// Decodes a name of /dev/disk/by-label: "\x20" (two hexadecimal digits) means one byte.
std::string UnescapedLabel(std::string_view name)
{
    std::string result;
    for (std::size_t at = 0; at < name.size(); ++at) {
        unsigned value = 0;
        if (name.substr(at).starts_with("\\x") && at + 3 < name.size() &&
            std::sscanf(std::string(name.substr(at + 2, 2)).c_str(), "%2x", &value) == 1) {
            result.push_back(static_cast<char>(value));
            at += 3;
        } else {
            result.push_back(name[at]);
        }
    }
    return result;
}

// The nearest part of the path that exists, with its links resolved.
std::string NearestReal(std::string path)
{
    while (!path.empty()) {
        if (char *real = realpath(path.c_str(), nullptr)) {
            std::string result = real;
            std::free(real);
            return result;
        }
        const auto separator = path.find_last_of('/');
        if (separator == std::string::npos)
            break;
        path.resize(separator == 0 && path.size() > 1 ? 1 : separator);
    }
    return "/";
}

bool IsInOrBelow(std::string_view path, std::string_view point)
{
    if (point == "/")
        return true;
    return path.starts_with(point) && (path.size() == point.size() || path[point.size()] == '/');
}

// The first line of a small file of the kernel; empty when there is none.
std::string SystemValue(const std::string &path)
{
    const std::string text = ReadRegularFile(path, 64).value_or("");
    return text.substr(0, text.find('\n'));
}

} // namespace

std::vector<Mount> ParseMounts(std::string_view mountInfo)
{
    std::vector<Mount> mounts;
    for (const std::string &line : runtime::Split(mountInfo, "\n")) {
        const auto fields = runtime::Split(line, " ");
        const auto dash = std::ranges::find(fields, "-");
        if (fields.size() < 6 || fields.end() - dash < 3 || dash - fields.begin() < 6)
            continue;
        mounts.push_back({fields[2], Unescaped(fields[4]), dash[1], Unescaped(dash[2])});
    }
    return mounts;
}

MountDrives::MountDrives() : MountDrives(Places()) {}

MountDrives::MountDrives(Places places)
    : m_places(std::move(places)), m_table(open(m_places.mountInfo.c_str(), O_RDONLY | O_CLOEXEC))
{
}

MountDrives::~MountDrives()
{
    if (m_table >= 0)
        close(m_table);
}

void MountDrives::Refresh()
{
    pollfd change{m_table, POLLPRI, 0};
    const bool changed = m_table >= 0 && poll(&change, 1, 0) > 0 && (change.revents & POLLERR) != 0;
    if (m_known && !changed)
        return;
    m_known = true;
    m_mounts = ParseMounts(ReadRegularFile(m_places.mountInfo, kMaxTableBytes).value_or(""));
    m_types.clear();
    m_labels.clear();
    m_lastFolder.clear();
    m_lastDrive.clear();
}

const Mount *MountDrives::FindMount(std::string_view drive) const
{
    // The last mount at a mount point hides the earlier ones.
    const auto found = std::find_if(m_mounts.rbegin(), m_mounts.rend(),
                                    [&](const Mount &mount) { return mount.point == drive; });
    return found == m_mounts.rend() ? nullptr : &*found;
}

std::string MountDrives::DriveOf(const std::string &path)
{
    Refresh();
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    if (!folder.empty() && folder == m_lastFolder)
        return m_lastDrive;
    const std::string real = NearestReal(path);
    std::string_view drive = "/";
    for (const Mount &mount : m_mounts)
        if (IsInOrBelow(real, mount.point) && mount.point.size() >= drive.size())
            drive = mount.point;
    m_lastFolder = folder;
    m_lastDrive = drive;
    return m_lastDrive;
}

std::string MountDrives::DeviceOf(const Mount &mount) const
{
    // File systems that use several devices (btrfs) have a number of their own; their source names
    // a device.
    struct stat status {
    };
    if (mount.device.starts_with("0:") && mount.source.starts_with("/dev/") &&
        stat(mount.source.c_str(), &status) == 0 && S_ISBLK(status.st_mode))
        return std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
    return mount.device;
}

DriveType MountDrives::TypeOfMount(const Mount &mount) const
{
    if (std::ranges::find(kRemoteTypes, mount.type) != kRemoteTypes.end())
        return DriveType::Remote;
    if (std::ranges::find(kMemoryTypes, mount.type) != kMemoryTypes.end())
        return DriveType::RamDisk;
    const std::string device = m_places.blockDevices + "/" + DeviceOf(mount);
    // A partition has no properties of its own; those of its disk are in the folder above. 5 is the
    // type of optical drives (scsi/scsi_proto.h of the kernel).
    constexpr std::string_view kOptical = "5";
    for (const std::string &disk : {device, device + "/.."}) {
        if (SystemValue(disk + "/device/type") == kOptical)
            return DriveType::CdRom;
        if (SystemValue(disk + "/removable") == "1")
            return DriveType::Removable;
    }
    return mount.type == "iso9660" ? DriveType::CdRom : DriveType::Fixed;
}

bool MountDrives::IsMediumMissing(const std::string &path)
{
    const auto isMissingIn = [&](const std::string &folder, int userLevels) {
        if (!IsInOrBelow(path, folder) || path.size() <= folder.size())
            return false;
        const std::string drive = DriveOf(path), nearest = NearestReal(path);
        if (drive != folder && IsInOrBelow(drive, folder))
            return false;
        std::error_code error;
        if (nearest == folder || (nearest != path && std::filesystem::is_empty(nearest, error)))
            return true;
        // A user's folder exists while one of the user's media is mounted. A path below it that is
        // missing is on another medium, unless a file has that name.
        const std::string_view rest =
            std::string_view(path).substr(std::min(nearest.size() + 1, path.size()));
        return userLevels > 0 && nearest.rfind('/') == folder.size() &&
               rest.find('/') != std::string_view::npos;
    };
    const auto isMissing = [&](const std::vector<std::string> &folders, int userLevels) {
        return std::ranges::any_of(
            folders, [&](const std::string &folder) { return isMissingIn(folder, userLevels); });
    };
    return isMissing(m_places.userMedia, 1) || isMissing(m_places.media, 0);
}

DriveType MountDrives::TypeOf(const std::string &drive)
{
    Refresh();
    const auto known = m_types.find(drive);
    if (known != m_types.end())
        return known->second;
    const Mount *mount = FindMount(drive);
    if (mount == nullptr)
        return m_mounts.empty() ? DriveType::Unknown : DriveType::NoRoot;
    return m_types[drive] = TypeOfMount(*mount);
}

std::string MountDrives::LabelOfMount(const Mount &mount) const
{
    if (TypeOfMount(mount) == DriveType::Remote)
        return {};
    char label[FSLABEL_MAX + 1] = {};
    const Descriptor point(open(mount.point.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (point && ioctl(point.Get(), FS_IOC_GETFSLABEL, label) == 0 && label[0] != '\0')
        return label;        // up to its first NUL
    std::error_code ignored; // a machine without that folder has no labels
    const std::string source = NearestReal(mount.source);
    for (const auto &entry : std::filesystem::directory_iterator(m_places.labels, ignored))
        if (NearestReal(entry.path().string()) == source)
            return UnescapedLabel(entry.path().filename().string());
    return {};
}

std::string MountDrives::LabelOf(const std::string &drive)
{
    Refresh();
    const auto known = m_labels.find(drive);
    if (known != m_labels.end())
        return known->second;
    const Mount *mount = FindMount(drive);
    if (mount == nullptr && drive == m_places.home)
        return drive.substr(drive.rfind('/') + 1);
    return m_labels[drive] = mount == nullptr ? std::string() : LabelOfMount(*mount);
}

// Whether a user would expect the mount among the drives: a mount of a disk, of a server or of a
// program. A mounted single file is not a drive; this is checked only for local disks, because
// others may not answer.
bool MountDrives::IsUsersDrive(const Mount &mount) const
{
    const auto isAbove = [&](std::string_view folder) { return IsInOrBelow(mount.point, folder); };
    if (std::ranges::any_of(m_places.machineFolders, isAbove) && !isAbove(kUsersMedia))
        return false;
    if (std::ranges::find(kRemoteTypes, mount.type) != kRemoteTypes.end() ||
        mount.type.starts_with("fuse"))
        return true;
    struct stat status {
    };
    return (mount.source.starts_with("/dev/") || mount.type == "zfs") && mount.type != "squashfs" &&
           stat(mount.point.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> MountDrives::Roots()
{
    Refresh();
    std::vector<std::string> points;
    for (const Mount &mount : m_mounts)
        if (mount.point != "/" && mount.point != m_places.home && IsUsersDrive(mount))
            points.push_back(mount.point);
    std::ranges::sort(points);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    std::vector<std::string> roots{"/"};
    struct stat status {
    };
    if (m_places.home.size() > 1 && stat(m_places.home.c_str(), &status) == 0 &&
        S_ISDIR(status.st_mode))
        roots.push_back(m_places.home);
    roots.insert(roots.end(), points.begin(), points.end());
    return roots;
}

std::string MountDrives::SerialOf(const std::string &drive)
{
    if (TypeOf(drive) == DriveType::Remote)
        return {};
    struct statvfs status {
    };
    if (statvfs(drive.c_str(), &status) != 0)
        return {};
    return std::to_string(static_cast<std::uint32_t>(status.f_fsid));
}

} // namespace platform::posix
