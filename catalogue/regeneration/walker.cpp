#include "catalogue/regeneration/walker.h"

#include "runtime/error.h"
#include "runtime/paths.h"

#include <algorithm>
#include <optional>

namespace catalogue
{

namespace
{

// Whether `path` still leads to the folder of this identity.
bool IsStill(const std::string &path, const platform::FolderIdentity &identity)
{
    const auto state = platform::FolderStateAt(path);
    return state && state->identity == identity;
}

} // namespace

void FolderBox::SetPath(const std::string &path)
{
    if (runtime::WithoutSeparators(path).size() < path.size()) {
        SetPath(runtime::CutSeparators(path));
    } else if (GoUp(path)) {
        Assign(path);
    } else if (IsBelow(path)) {
        m_listings.push_back(ReadBelow(path));
        Assign(path);
    } else {
        SetRoot(path);
    }
}

void FolderBox::SetRoot(const std::string &path)
{
    const std::string wanted = runtime::CutSeparators(path);
    OpenFolder folder(wanted);
    ListingPtr root = folder.Read();
    m_listings.clear();
    m_reached = {{root->identity, wanted}};
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

// The listing of a folder that is entered from the folder above it; an empty listing when the
// folder was reached by another path before.
ListingPtr FolderBox::ReadBelow(const std::string &path)
{
    ListingPtr listing;
    if (m_cache != nullptr)
        listing = m_takesOld ? m_cache->FindOld(path) : m_cache->Find(path);
    std::optional<OpenFolder> folder;
    if (listing == nullptr)
        folder.emplace(path);
    const platform::FolderIdentity identity =
        listing ? listing->identity : folder->State().identity;
    std::string &reached = m_reached[identity];
    if (!reached.empty() && reached != path && IsStill(reached, identity))
        return std::make_shared<FolderListing>(FolderListing{path, identity, {}, {}});
    if (folder) {
        listing = folder->Read();
        if (m_cache != nullptr)
            m_cache->Keep(listing, *folder);
    }
    reached = path;
    return listing;
}

// Returns to a folder above the one in the box; its listing has been kept. Returns: false when
// `path` is not such a folder.
bool FolderBox::GoUp(const std::string &path)
{
    const auto kept =
        std::find_if(m_listings.begin(), m_listings.end(),
                     [&](const ListingPtr &listing) { return listing->path == path; });
    if (kept == m_listings.end())
        return false;
    m_listings.erase(kept + 1, m_listings.end());
    return true;
}

// Whether `path` is one step below the folder in the box.
bool FolderBox::IsBelow(const std::string &path) const
{
    const auto separator = path.rfind(runtime::PathSeparator);
    return !m_listings.empty() && separator != std::string::npos &&
           runtime::WithoutSeparators(std::string_view(path).substr(0, separator + 1)) == m_path;
}

std::string FolderBox::List(std::int64_t index) const
{
    const FolderListing &listing = Listing();
    if (index < 0 || index >= static_cast<std::int64_t>(listing.folders.size()))
        return {};
    return runtime::JoinPath(m_path, listing.folders[static_cast<std::size_t>(index)]);
}

const FolderListing &FolderBox::Listing() const
{
    static const FolderListing nothing{};
    return m_listings.empty() ? nothing : *m_listings.back();
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
    m_path = runtime::WithoutSeparators(path);
    m_read = false;
    m_files.clear();
}

// The files of the folder in the box. When the folder box is at the same folder, the names that it
// has read are used.
const std::vector<std::string> &FileBox::Files() const
{
    if (m_dirs != nullptr && m_dirs->Path() == m_path)
        return m_dirs->Listing().files;
    if (!m_read && !m_path.empty()) {
        try {
            m_files = OpenFolder(m_path).Read()->files;
        } catch (const runtime::RuntimeError &) {
            m_files.clear(); // a folder that cannot be read has no files
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

// One object, so that the file box follows the folder box from its first change on.
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

} // namespace catalogue
