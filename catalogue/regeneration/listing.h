// catalogue/regeneration/listing.h - the content of one folder of a walk, and the listings that a
// walk keeps because it reaches each folder more than once.
#pragma once

#include "platform/disk/folderreader.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace catalogue
{

// The content of one folder, read in one pass. The names are sorted by their upper case, equal ones
// by their bytes.
struct FolderListing {
    std::string path;
    platform::FolderIdentity identity;
    std::vector<std::string> folders; // names, links to folders included; without trash folders
    std::vector<std::string> files;   // names that end in ".mp3" in any letter case; no companions
};
using ListingPtr = std::shared_ptr<const FolderListing>; // owned by boxes and a ListingCache

// A folder that is open, to be listed. Errors of both steps: kPathNotFound when there is no such
// folder; else FileError when it cannot be read.
class OpenFolder
{
public:
    explicit OpenFolder(const std::string &path);

    [[nodiscard]] const platform::FolderState &State() const
    {
        return m_state;
    } // when it was opened

    // Whether any later change of the folder changes its state: it was opened long enough after its
    // last change.
    [[nodiscard]] bool WasSettled() const;

    // Reads the names. To be called once.
    ListingPtr Read();

private:
    platform::FolderReader m_folder;
    std::shared_ptr<FolderListing> m_listing; // empty until Read
    platform::FolderState m_state;
    std::int64_t m_openedAtNs = 0; // by the clock of file stamps
};

// The listings of the folders that a walk reaches more than once. It keeps at most about 6 MiB:
// other folders are read again. Its operations may be called on any thread.
class ListingCache
{
public:
    // The listing of the folder at `path`; null when none is kept, and when the folder has changed
    // or was replaced.
    ListingPtr Find(const std::string &path);

    // The same without examining the folder: its content when it was listed.
    ListingPtr FindOld(const std::string &path);

    // Keeps the listing of `folder`, if a later change of the folder can be detected. Returns:
    // false when there is no room for more.
    bool Keep(const ListingPtr &listing, const OpenFolder &folder);

private:
    struct Kept {
        ListingPtr listing;
        platform::FolderState state;
    };
    Kept KeptOf(const std::string &path);

    std::mutex m_mutex;                           // guards the rest
    std::unordered_map<std::string, Kept> m_kept; // by path
    std::size_t m_bytes = 0;
};

// While one exists, a helper thread lists the folders below `root` into `cache`, if there is a
// second processor: from the last folder to the first, until it reaches one that is kept already.
// So a walk that begins at the first folder reads only half of them. Nobody waits for the end of
// the helper.
class ListingAhead
{
public:
    // The other owner of `cache` is the helper: when it is reading, it may outlive this object.
    ListingAhead(const std::shared_ptr<ListingCache> &cache, ListingPtr root);
    ~ListingAhead() { *m_isOver = true; }
    ListingAhead(const ListingAhead &) = delete;
    ListingAhead &operator=(const ListingAhead &) = delete;

private:
    std::shared_ptr<std::atomic<bool>> m_isOver = std::make_shared<std::atomic<bool>>(false);
};

} // namespace catalogue
