// catalogue/regeneration/lookahead.h - announces the next files of a walk when that makes it
// faster, so that their bytes are read ahead (metadata::ExpectPasses). The only effect is a shorter
// time.
#pragma once

#include "catalogue/regeneration/knownsongs.h"
#include "catalogue/regeneration/walker.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace catalogue
{

// Reads the folders below `root` before a walk does, in the same order. The destructor cancels the
// announcements.
class LookAhead
{
public:
    // `cache`: the listings of the walk; `known`: files that are announced as those that will be
    // read only when they have changed. Both are owned by the caller.
    LookAhead(std::string root, ListingCache &cache, const KnownSongs &known)
        : m_root(std::move(root)), m_known(known)
    {
        m_box.UseCache(&cache, true);
    }
    ~LookAhead();
    LookAhead(const LookAhead &) = delete;
    LookAhead &operator=(const LookAhead &) = delete;

    // To be called before each file of the walk.
    void Advance();

private:
    struct Level {
        std::string path;
        std::int64_t nextFolder; // the index of the next sub-folder
    };
    bool Start();
    bool ExpectFiles();
    bool EnterNextFolder();

    std::string m_root;
    const KnownSongs &m_known;
    bool m_hasStarted = false;
    FolderBox m_box;
    std::vector<Level> m_levels;   // from the root down; empty at the end of the walk
    std::size_t m_nextFile = 0;    // of the folder in the box
    std::uint64_t m_passed = 0;    // files that the walk has reached
    std::uint64_t m_announced = 0; // files that were announced or skipped, in the same order
};

} // namespace catalogue
