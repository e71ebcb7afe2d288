// catalogue/regeneration/walker.h - the two boxes that drive a walk over the music folder: `Dirs`
// lists the sub-folders of its folder, `MP3s` the MP3 files of the same folder.
//
// Both list names sorted by their upper case, equal ones by their bytes. Hidden names are listed
// too, except the trash folders of a disk (".Trash", ".Trash-1000") and the companion files
// "._song.mp3" of another operating system. A name is kept byte for byte.
#pragma once

#include "catalogue/regeneration/listing.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace catalogue
{

// The folder box. It keeps the listings of the folders above the current one, so that returning to
// them reads nothing: a walk reads each folder once, however many sub-folders it has.
class FolderBox
{
public:
    // The folder in the box; empty until one is set.
    const std::string &Path() const { return m_path; }

    // Puts `path` into the box; separators at its end are cut, except the root's. A folder that was
    // reached by another path since SetRoot has an empty list: so a walk over links ends, and reads
    // each folder once, by the first path.
    // Errors: kPathNotFound when there is no such folder; else FileError when it cannot be read.
    // The box is then unchanged.
    void SetPath(const std::string &path);

    // The same for the start of a walk: earlier listings are not used. Errors: as SetPath.
    void SetRoot(const std::string &path);

    // The full path of sub-folder `index`, from 0; empty after the last one.
    std::string List(std::int64_t index) const;

    // The listing of the folder in the box; an empty one until a folder is set.
    const FolderListing &Listing() const;
    ListingPtr SharedListing() const { return m_listings.empty() ? nullptr : m_listings.back(); }

    // Forgets the folder and all listings.
    void Clear();

    // Uses `cache` for listings until another cache or null is set. The caller owns it; several
    // boxes may use it. `takesOld`: use listings also when their folders have changed meanwhile.
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
    std::map<platform::FolderIdentity, std::string> m_reached; // by which path, since SetRoot
    ListingCache *m_cache = nullptr;                           // for the folders below the root
    bool m_takesOld = false;
};

// The file box with the pattern "*.mp3". It has its own path, which is set at each change of the
// folder box to which it belongs.
class FileBox
{
public:
    FileBox() = default;
    // Follows `dirs` and handles its Change event. `dirs` must exist as long as this box.
    explicit FileBox(FolderBox &dirs);
    FileBox(const FileBox &) = delete;
    FileBox &operator=(const FileBox &) = delete;

    const std::string &Path() const { return m_path; }

    // Puts `path` only into this box; separators at its end are cut. The folder is read when its
    // files are needed; when it cannot be read, it has none.
    void SetPath(const std::string &path);

    std::int64_t ListCount() const;

    // The name of file `index`, from 0; empty after the last one.
    std::string List(std::int64_t index) const;

private:
    const std::vector<std::string> &Files() const;

    const FolderBox *m_dirs = nullptr;
    std::string m_path;
    mutable bool m_read = false;              // whether m_files are the files of m_path
    mutable std::vector<std::string> m_files; // when the folder box is at another folder
};

// The program's two boxes. At the start they have no folder. Dirs().Clear() resets both, for tests.
FolderBox &Dirs();
FileBox &MP3s();

} // namespace catalogue
