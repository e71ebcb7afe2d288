// catalogue/regeneration/lookahead.h - says which files a walk comes to next where that pays, so
// that their bytes are on the way (metadata::ExpectPasses). It changes nothing but the time.
#pragma once

#include "catalogue/regeneration/walker.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace catalogue
{

// Runs ahead of a walk over `root`, folder by folder in the same order. At the end of its life
// nothing is expected any more.
class LookAhead
{
public:
    // `cache`: with the listings of the walk; the caller's.
    LookAhead(std::string root, ListingCache &cache) : m_root(std::move(root))
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
        std::int64_t nextFolder; // the index of the sub-folder to go to
    };
    bool Start();
    bool ExpectFiles();
    bool EnterNextFolder();

    std::string m_root;
    bool m_hasStarted = false;
    FolderBox m_box;
    std::vector<Level> m_levels; // from the root down; empty at the end of the walk
    std::size_t m_nextFile = 0;  // of the folder in the box
    std::uint64_t m_passed = 0;  // files that the walk has come to
    std::uint64_t m_said = 0;    // files that were said or passed over, in the same order
};

} // namespace catalogue
