// catalogue/regeneration/walker.h - the two boxes that drive a walk over the music folder: `Dirs`
// lists the sub-folders of its folder, `MP3s` the MP3 files of the same folder.
//
// Both list in the order of the upper-cased names, and of the bytes where these are equal. Hidden
// names are listed like all others, but for the folders of a disk's trash (".Trash", ".Trash-1000")
// and the companions "._song.mp3" of another system. A name is kept as the file system gives it,
// byte for byte.
#pragma once

#include "catalogue/regeneration/listing.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace catalogue
{

// The folder box. It keeps the listings of the folders on the way down, so that going back up reads
// nothing again: a walk reads each folder once, however many sub-folders it has.
class FolderBox
{
public:
    // The folder in the box; empty as long as none was set.
    const std::string &Path() const { return m_path; }

    // Puts `path` in the box; separators at its end are cut (the root keeps its own). A folder that
    // was reached by another path since SetRoot lists nothing: a walk over links ends, and reads
    // each folder once, by the path that comes first.
    // Errors: kPathNotFound when there is no such folder; else the number and the words of the
    //         system (FileError) when it cannot be read. The box then stays where it was.
    void SetPath(const std::string &path);

    // The same for the start of a walk: nothing that was listed before is used. Errors: as SetPath.
    void SetRoot(const std::string &path);

    // The full path of sub-folder `index`, from 0; empty after the last one.
    std::string List(std::int64_t index) const;

    // What the folder in the box holds; an empty listing as long as none was set.
    const FolderListing &Listing() const;
    ListingPtr SharedListing() const { return m_listings.empty() ? nullptr : m_listings.back(); }

    // Forgets the folder and all listings.
    void Clear();

    // Takes listings from `cache`, and keeps them there, until another one or null is given. It is
    // the caller's, and may serve several boxes. `takesOld`: also listings of folders that have
    // changed meanwhile.
    void UseCache(ListingCache *cache, bool takesOld = false)
    {
        m_cache = cache;
        m_takesOld = takesOld;
    }

    std::function<void()> changed; // the Change event: another folder is in the box

private:
    void Assign(const std::string &path);
    bool GoUp(const std::string &path);
    bool IsBelow(const std::string &path) const;
    ListingPtr ReadBelow(const std::string &path);

    std::string m_path;
    std::vector<ListingPtr> m_listings; // from the outermost folder down to the one in the box
    std::map<FolderIdentity, std::string> m_reached; // by which path, since SetRoot
    ListingCache *m_cache = nullptr;                 // for the folders below the root
    bool m_takesOld = false;
};

// The file box with the pattern "*.mp3". It has a path of its own, which follows each change of the
// folder box it goes with.
class FileBox
{
public:
    FileBox() = default;
    // Follows `dirs`, whose Change event it takes. Both live equally long.
    explicit FileBox(FolderBox &dirs);
    FileBox(const FileBox &) = delete;
    FileBox &operator=(const FileBox &) = delete;

    const std::string &Path() const { return m_path; }

    // Puts `path` in the box alone; separators at its end are cut. The folder is read when its
    // files are asked for; one that cannot be read has none.
    void SetPath(const std::string &path);

    std::int64_t ListCount() const;

    // The name of file `index`, from 0; empty after the last one.
    std::string List(std::int64_t index) const;

private:
    const std::vector<std::string> &Files() const;

    const FolderBox *m_dirs = nullptr;
    std::string m_path;
    mutable bool m_read = false;              // m_files are those of m_path
    mutable std::vector<std::string> m_files; // when the folder box is at another folder
};

// The program's two boxes. They start at no folder at all. A test puts them back with
// Dirs().Clear().
FolderBox &Dirs();
FileBox &MP3s();

} // namespace catalogue
