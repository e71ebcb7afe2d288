// playlists/entryfiles.h - finds the files of a list's entries on this machine. Lists are written
// on other machines too: with back-slashes, drive letters, another letter case, or in a code page.
// A helper thread asks the disk, because that may take long.
#pragma once

#include "playlists/m3u.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace playlists
{

// What the paths of one list are relative to.
struct ListPlace {
    std::string folder;      // the folder of the list's file, with a separator at its end
    std::string drive;       // the mount point of that folder, without a separator at its end
    std::string playerDrive; // the same for the player's folder
    std::vector<std::string> mounts; // the mount points of this machine that users know
    bool isUtf8 = true;              // the list is UTF-8; else it is in the code page
};

// The paths at which the file of an entry may be, in the order in which they are tried: EntryPath
// with the bytes of the list; the same in UTF-8 when the list is in a code page; both without "%"
// at their beginning, which is there when the name before the path ends with "%"; these with "/"
// for each back-slash; and for a path with a drive letter, the same path on a mount point named
// after that letter (/mnt/c) and on the drive of the list. Absolute paths only, each once.
std::vector<std::string> PlacesOfEntry(std::string_view path, const ListPlace &place);

// Finds files by paths whose letter case may be wrong. Keeps the names of the folders that it has
// read.
class FileFinder
{
public:
    // The first of `places` that exists and is not a folder; else the first one for which such a
    // file exists with other letter case (when there are several, the first in byte order).
    std::optional<std::string> Find(const std::vector<std::string> &places);

private:
    using Names = std::unordered_multimap<std::string, std::string>; // by the name in upper case
    const Names &NamesIn(const std::string &folder);
    std::optional<std::string> FindFolded(const std::string &path);

    std::map<std::string, Names> m_folders;
};

// The result for one entry: its file, or nothing when it was not found.
struct FoundEntry {
    std::size_t entry; // its zero-based number in the list
    std::optional<std::string> path;
};

// Searches the files of all entries on a helper thread, one after the other. The thread uses only
// its own copy of the data. When this object is destroyed, the thread ends after the current file;
// nothing waits for it.
class EntrySearch
{
public:
    static constexpr int kMostThreads = 64; // that wait for disks which do not answer

    // `places`: those of entry 0, 1, ... When there are `mostThreads` already, or no thread
    // can be started, nothing is searched: it is done at once, without results.
    explicit EntrySearch(std::vector<std::vector<std::string>> places,
                         int mostThreads = kMostThreads);
    ~EntrySearch();
    EntrySearch(const EntrySearch &) = delete;
    EntrySearch &operator=(const EntrySearch &) = delete;

    // The results since the last call.
    std::vector<FoundEntry> Take();

    // Whether Take has returned the results for all entries.
    bool Done() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared; // shared with the thread
    std::size_t m_count;
    std::size_t m_taken = 0;
};

} // namespace playlists
