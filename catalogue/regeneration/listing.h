// catalogue/regeneration/listing.h - what one folder of a walk holds, and the listings that a walk
// keeps because it comes to each folder more than once.
#pragma once

#include <dirent.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace catalogue
{

using FolderIdentity = std::pair<std::uint64_t, std::uint64_t>; // device and inode

// What one folder holds, read in one pass. The names are in the order of the upper-cased names, and
// of the bytes where these are equal.
struct FolderListing {
    std::string path;
    FolderIdentity identity;
    std::vector<std::string> folders; // names, links to folders included; no trash
    std::vector<std::string> files;   // names that end in ".mp3" in any letter case; no companions
};
using ListingPtr = std::shared_ptr<const FolderListing>; // owned by boxes and a ListingCache

// Which folder, and which state of it.
struct FolderState {
    FolderIdentity identity;
    std::int64_t modifiedNs = 0; // since 1970, UTC
    std::int64_t changedNs = 0;

    bool operator==(const FolderState &) const = default;
};

// What `path` leads to now; nothing where that is not to be had.
std::optional<FolderState> FolderStateAt(const std::string &path);

// A folder that is open, to be listed. Errors of both steps: kPathNotFound when there is no such
// folder; else the number and the words of the system (FileError) when it cannot be read.
class OpenFolder
{
public:
    explicit OpenFolder(const std::string &path);

    [[nodiscard]] const FolderState &State() const { return m_state; } // when it was opened

    // Whether a change of the folder since it was opened shows in its state: it was opened long
    // enough after the last one.
    [[nodiscard]] bool WasSettled() const;

    // Reads the names. Once.
    ListingPtr Read();

private:
    struct CloseFolder {
        void operator()(DIR *folder) const { closedir(folder); }
    };
    std::unique_ptr<DIR, CloseFolder> m_folder;
    std::shared_ptr<FolderListing> m_listing; // empty up to Read
    FolderState m_state;
    std::int64_t m_openedAtNs = 0; // by the clock of file stamps
};

// The listings of the folders that a walk comes to more than once. It holds some 6 MiB of them at
// most: folders that find no room are read again. Its operations may be called on any thread.
class ListingCache
{
public:
    // The listing of the folder at `path`; null where none is kept, or where it is another folder
    // now or has changed.
    ListingPtr Find(const std::string &path);

    // The same without a look at the folder: what it held when it was listed.
    ListingPtr FindOld(const std::string &path);

    // Keeps the listing of `folder`, where a change of it would be seen. False when there is no
    // room for more.
    bool Keep(const ListingPtr &listing, const OpenFolder &folder);

private:
    struct Kept {
        ListingPtr listing;
        FolderState state;
    };
    Kept KeptOf(const std::string &path);

    std::mutex m_mutex;                           // guards the rest
    std::unordered_map<std::string, Kept> m_kept; // by path
    std::size_t m_bytes = 0;
};

// While one lives, a helper thread lists the folders below `root` into `cache`, where there is a
// second processor for it: from the last one to the first, up to one that is kept already. So a
// walk from the first one on has half of them to read. Nobody waits for the helper.
class ListingAhead
{
public:
    // The other owner of `cache` is the helper, which may outlive this object in the middle of a
    // read.
    ListingAhead(const std::shared_ptr<ListingCache> &cache, ListingPtr root);
    ~ListingAhead() { *m_isOver = true; }
    ListingAhead(const ListingAhead &) = delete;
    ListingAhead &operator=(const ListingAhead &) = delete;

private:
    std::shared_ptr<std::atomic<bool>> m_isOver = std::make_shared<std::atomic<bool>>(false);
};

// `name` in `folder`: one separator between them, none doubled after the root.
std::string JoinPath(const std::string &folder, const std::string &name);

} // namespace catalogue
