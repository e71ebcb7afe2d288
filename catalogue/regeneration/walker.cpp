#include "catalogue/regeneration/walker.h"

#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/apppath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

namespace catalogue
{

namespace
{

struct CloseFolder {
    void operator()(DIR *folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

[[noreturn]] void ThrowFolderError(int errnoValue)
{
    if (errnoValue == ENOENT || errnoValue == ENOTDIR)
        throw runtime::RuntimeError(runtime::kPathNotFound);
    throw runtime::FileError(errnoValue);
}

// The folders in which desktops keep what the user threw away on a disk.
// Source: the trash rules of freedesktop.org (".Trash", ".Trash-1000").
bool IsTrash(std::string_view name)
{
    return name == ".Trash" || name.starts_with(".Trash-");
}

// Whether a file is the companion that another system puts beside each file on a foreign disk: the
// name begins with "._", the bytes with that format's mark. Source: AppleDouble, RFC 1740.
bool IsCompanion(DIR *folder, const char *name)
{
    constexpr std::string_view kMark = std::string_view("\x00\x05\x16\x07", 4);
    if (!std::string_view(name).starts_with("._"))
        return false;
    const int file = openat(dirfd(folder), name, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return false;
    char start[kMark.size()] = {};
    const ssize_t got = pread(file, start, sizeof start, 0);
    close(file);
    return std::string_view(start, got > 0 ? static_cast<std::size_t>(got) : 0) == kMark;
}

bool IsDotName(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool MatchesPattern(std::string_view name)
{
    return name.size() >= 4 && runtime::EqualAscii(name.substr(name.size() - 4), ".mp3");
}

// Whether the entry is a folder; what a link points to counts. What cannot be found out counts as
// none, so that a broken link named like an MP3 file is listed and reported as a file.
bool IsFolder(DIR *parent, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat status;
    return fstatat(dirfd(parent), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

void SortNames(std::vector<std::string> &names)
{
    std::vector<std::pair<std::string, std::string>> keyed;
    keyed.reserve(names.size());
    for (std::string &name : names) {
        std::string upper = runtime::UpperText(name);
        keyed.emplace_back(std::move(upper), std::move(name));
    }
    std::sort(keyed.begin(), keyed.end());
    std::transform(keyed.begin(), keyed.end(), names.begin(),
                   [](auto &entry) { return std::move(entry.second); });
}

OpenFolder Open(const std::string &path)
{
    OpenFolder folder(opendir(path.c_str()));
    if (folder == nullptr)
        ThrowFolderError(errno);
    return folder;
}

void ReadNames(DIR *folder, FolderListing &listing)
{
    for (;;) {
        errno = 0;
        const dirent *entry = readdir(folder);
        if (entry == nullptr)
            break;
        if (IsDotName(entry->d_name))
            continue;
        if (IsFolder(folder, *entry)) {
            if (!IsTrash(entry->d_name))
                listing.folders.emplace_back(entry->d_name);
        } else if (MatchesPattern(entry->d_name) && !IsCompanion(folder, entry->d_name)) {
            listing.files.emplace_back(entry->d_name);
        }
    }
    if (errno != 0)
        ThrowFolderError(errno);
    SortNames(listing.folders);
    SortNames(listing.files);
}

FolderListing OpenListing(const std::string &path, OpenFolder &folder)
{
    folder = Open(path);
    struct stat status;
    if (fstat(dirfd(folder.get()), &status) != 0)
        ThrowFolderError(errno);
    return {path, {status.st_dev, status.st_ino}, {}, {}};
}

// Whether `path` still leads to the folder of this identity.
bool IsStill(const std::string &path, const FolderIdentity &identity)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 &&
           FolderIdentity{status.st_dev, status.st_ino} == identity;
}

std::string CutSeparators(std::string path)
{
    while (path.size() > 1 && path.back() == shell::PathSeparator)
        path.pop_back();
    return path;
}

} // namespace

void FolderBox::SetPath(const std::string &path)
{
    const std::string wanted = CutSeparators(path);
    if (GoUp(wanted)) {
        Assign(wanted);
    } else if (IsBelow(wanted)) {
        m_listings.push_back(ReadBelow(wanted));
        Assign(wanted);
    } else {
        SetRoot(wanted);
    }
}

void FolderBox::SetRoot(const std::string &path)
{
    const std::string wanted = CutSeparators(path);
    OpenFolder folder;
    FolderListing root = OpenListing(wanted, folder);
    ReadNames(folder.get(), root);
    m_listings.clear();
    m_reached = {{root.identity, wanted}};
    m_listings.push_back(std::move(root));
    Assign(wanted);
}

void FolderBox::Assign(const std::string &path)
{
    if (path == m_path)
        return;
    m_path = path;
    if (changed)
        changed();
}

// The listing of a folder on the way down; an empty one when it was reached by another path before.
FolderListing FolderBox::ReadBelow(const std::string &path)
{
    OpenFolder folder;
    FolderListing listing = OpenListing(path, folder);
    std::string &reached = m_reached[listing.identity];
    if (!reached.empty() && reached != path && IsStill(reached, listing.identity))
        return listing;
    ReadNames(folder.get(), listing);
    reached = path;
    return listing;
}

// Goes back to a folder on the way down, whose listing is kept.
bool FolderBox::GoUp(const std::string &path)
{
    const auto kept =
        std::find_if(m_listings.begin(), m_listings.end(),
                     [&](const FolderListing &listing) { return listing.path == path; });
    if (kept == m_listings.end())
        return false;
    m_listings.erase(kept + 1, m_listings.end());
    return true;
}

// Whether `path` is one step below the folder in the box.
bool FolderBox::IsBelow(const std::string &path) const
{
    const auto separator = path.rfind(shell::PathSeparator);
    return !m_listings.empty() && separator != std::string::npos &&
           CutSeparators(path.substr(0, separator + 1)) == m_path;
}

std::string FolderBox::List(std::int64_t index) const
{
    const FolderListing &listing = Listing();
    if (index < 0 || index >= static_cast<std::int64_t>(listing.folders.size()))
        return {};
    return JoinPath(m_path, listing.folders[static_cast<std::size_t>(index)]);
}

const FolderListing &FolderBox::Listing() const
{
    static const FolderListing nothing{};
    return m_listings.empty() ? nothing : m_listings.back();
}

void FolderBox::Clear()
{
    m_listings.clear();
    m_reached.clear();
    Assign({});
}

FileBox::FileBox(FolderBox &dirs) : m_dirs(&dirs)
{
    dirs.changed = [this, &dirs] { SetPath(dirs.Path()); };
}

void FileBox::SetPath(const std::string &path)
{
    m_path = CutSeparators(path);
    m_read = false;
    m_files.clear();
}

// The files of the folder in the box; those that the folder box has read where it is at that
// folder.
const std::vector<std::string> &FileBox::Files() const
{
    if (m_dirs != nullptr && m_dirs->Path() == m_path)
        return m_dirs->Listing().files;
    if (!m_read && !m_path.empty()) {
        try {
            OpenFolder folder;
            FolderListing listing = OpenListing(m_path, folder);
            ReadNames(folder.get(), listing);
            m_files = std::move(listing.files);
        } catch (const runtime::RuntimeError &) {
            m_files.clear(); // what cannot be read has no files
        }
    }
    m_read = true;
    return m_files;
}

std::int64_t FileBox::ListCount() const
{
    return static_cast<std::int64_t>(Files().size());
}

std::string FileBox::List(std::int64_t index) const
{
    const std::vector<std::string> &files = Files();
    if (index < 0 || index >= static_cast<std::int64_t>(files.size()))
        return {};
    return files[static_cast<std::size_t>(index)];
}

namespace
{

// Made together, so that the file box follows from the first change on.
struct Boxes {
    FolderBox dirs;
    FileBox mp3s{dirs};
};

Boxes &TheBoxes()
{
    static Boxes boxes;
    return boxes;
}

} // namespace

FolderBox &Dirs()
{
    return TheBoxes().dirs;
}

FileBox &MP3s()
{
    return TheBoxes().mp3s;
}

std::string JoinPath(const std::string &folder, const std::string &name)
{
    if (!folder.empty() && folder.back() == shell::PathSeparator)
        return folder + name;
    return folder + shell::PathSeparator + name;
}

} // namespace catalogue
