// playlists/entryfiles.h - where the files of a list's entries are on this machine. Lists are
// written elsewhere too: with back-slashes, with drive letters, in another letter case, in a code
// page. Asking the disk is left to a helper thread, which may wait for it.
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

// What the paths of one list hang from.
struct ListPlace {
    std::string folder;      // of the list's file, with a trailing separator
    std::string drive;       // the mount point of that folder, without a trailing separator
    std::string playerDrive; // the same of the player's folder
    bool isUtf8 = true;      // the list is UTF-8; else it is in the code page
};

// The places where the file of an entry may be, in the order in which they are tried: the path of
// the rules with the bytes of the list, the same in UTF-8 when the list is in a code page, both
// with "/" for each back-slash, and for a drive letter the same path on a mount that goes by that
// letter (/mnt/c) and on the list's own. Paths from the root only; each once.
std::vector<std::string> PlacesOfEntry(std::string_view path, const ListPlace &place);

// Finds files by paths whose letter case may differ. Keeps the names of the folders it has read.
class FileFinder
{
public:
    // The first of `places` where there is something else than a folder; then the first where a
    // path of other letter case leads to such a thing (of several, the first in byte order).
    std::optional<std::string> Find(const std::vector<std::string> &places);

private:
    using Names = std::unordered_multimap<std::string, std::string>; // by upper case
    const Names &NamesIn(const std::string &folder);
    std::optional<std::string> FindFolded(const std::string &path);

    std::map<std::string, Names> m_folders;
};

// One entry looked for: its file, or nothing when it is nowhere.
struct FoundEntry {
    std::size_t entry; // its number in the list, from 0
    std::optional<std::string> path;
};

// Looks for entries on a helper thread, one after the other. The thread works on what it was given
// and on nothing else; when this goes it ends after the file that it is at, and nobody waits.
class EntrySearch
{
public:
    // `places`: those of entry 0, 1, ...
    explicit EntrySearch(std::vector<std::vector<std::string>> places);
    ~EntrySearch();
    EntrySearch(const EntrySearch &) = delete;
    EntrySearch &operator=(const EntrySearch &) = delete;

    // What was found since the last call.
    std::vector<FoundEntry> Take();

    // Whether every entry has been handed out by Take.
    bool Done() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared; // with the thread
    std::size_t m_count;
    std::size_t m_taken = 0;
};

} // namespace playlists
