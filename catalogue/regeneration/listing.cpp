#include "catalogue/regeneration/listing.h"

#include "platform/disk/files.h"
#include "platform/helperthread.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <set>
#include <string_view>
#include <thread>

namespace catalogue
{

namespace
{

constexpr std::size_t kMostBytesKept = 6u << 20; // some 60,000 songs

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

// Whether a file is the companion that another operating system puts beside each file on a foreign
// disk: its name begins with "._", its bytes begin with that format's mark. Source: AppleDouble,
// RFC 1740.
bool IsCompanion(const platform::FolderReader &folder, const char *name)
{
    constexpr std::string_view kMark = std::string_view("\x00\x05\x16\x07", 4);
    if (!std::string_view(name).starts_with("._"))
        return false;
    std::array<char, kMark.size()> start{};
    const std::size_t got = folder.ReadStart(name, start.data(), start.size());
    return std::string_view(start.data(), got) == kMark;
}

bool MatchesPattern(std::string_view name)
{
    return name.size() >= 4 && runtime::EqualAscii(name.substr(name.size() - 4), ".mp3");
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

// A broken link named like an MP3 file is listed and reported as a file.
void ReadNames(platform::FolderReader &folder, FolderListing &listing)
{
    platform::FolderEntry entry;
    int failure = 0;
    while (folder.Next(entry, failure)) {
        if (entry.isFolder) {
            if (!IsTrash(entry.name))
                listing.folders.emplace_back(entry.name);
        } else if (MatchesPattern(entry.name) && !IsCompanion(folder, entry.name)) {
            listing.files.emplace_back(entry.name);
        }
    }
    if (failure != 0)
        ThrowFolderError(failure);
    SortNames(listing.folders);
    SortNames(listing.files);
}

// The memory that the listing takes, approximately.
std::size_t SizeOf(const FolderListing &listing)
{
    constexpr std::size_t kOfName = sizeof(std::string) + 16; // and the allocator's part
    std::size_t bytes = sizeof listing + 2 * listing.path.size() + 200;
    for (const auto *names : {&listing.folders, &listing.files})
        for (const std::string &name : *names)
            bytes += kOfName + name.size();
    return bytes;
}

// The walk of the helper thread: lists the folders below `listing` from the last to the first, each
// with the folders below it. Go returns false when the walk is to end.
class WalkFromTheEnd
{
public:
    WalkFromTheEnd(std::shared_ptr<ListingCache> cache,
                   std::shared_ptr<const std::atomic<bool>> isOver)
        : m_cache(std::move(cache)), m_isOver(std::move(isOver))
    {
    }

    bool Go(const FolderListing &listing)
    {
        m_reached.insert(listing.identity);
        for (auto name = listing.folders.rbegin(); name != listing.folders.rend(); ++name) {
            const std::string path = runtime::JoinPath(listing.path, *name);
            if (*m_isOver || m_cache->FindOld(path) != nullptr)
                return false;
            const ListingPtr below = Read(path);
            if (m_isFull || (below != nullptr && !Go(*below)))
                return false;
        }
        return true;
    }

private:
    // Null when the folder cannot be read or was reached by another path: the walk handles these
    // cases.
    ListingPtr Read(const std::string &path)
    {
        try {
            OpenFolder folder(path);
            if (m_reached.contains(folder.State().identity))
                return nullptr;
            ListingPtr listing = folder.Read();
            m_isFull = !m_cache->Keep(listing, folder);
            return listing;
        } catch (const runtime::RuntimeError &) {
            return nullptr;
        }
    }

    std::shared_ptr<ListingCache> m_cache;
    std::shared_ptr<const std::atomic<bool>> m_isOver;
    std::set<platform::FolderIdentity> m_reached;
    bool m_isFull = false;
};

} // namespace

OpenFolder::OpenFolder(const std::string &path)
    : m_listing(std::make_shared<FolderListing>()),
      m_openedAtNs(platform::SystemFiles().StampClockNs())
{
    if (const int failure = m_folder.Open(path, m_state); failure != 0)
        ThrowFolderError(failure);
    m_listing->path = path;
    m_listing->identity = m_state.identity;
}

bool OpenFolder::WasSettled() const
{
    platform::FileIdentity folder;
    folder.changedNs = m_state.changedNs;
    return platform::WasSettled(folder, m_openedAtNs);
}

ListingPtr OpenFolder::Read()
{
    ReadNames(m_folder, *m_listing);
    return std::move(m_listing);
}

ListingPtr ListingCache::Find(const std::string &path)
{
    const Kept kept = KeptOf(path);
    return kept.listing != nullptr && platform::FolderStateAt(path) == kept.state ? kept.listing
                                                                                  : nullptr;
}

ListingPtr ListingCache::FindOld(const std::string &path)
{
    return KeptOf(path).listing;
}

ListingCache::Kept ListingCache::KeptOf(const std::string &path)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_kept.find(path);
    return found == m_kept.end() ? Kept() : found->second;
}

bool ListingCache::Keep(const ListingPtr &listing, const OpenFolder &folder)
{
    const std::size_t bytes = SizeOf(*listing);
    const std::lock_guard lock(m_mutex);
    if (m_bytes + bytes > kMostBytesKept)
        return false;
    if (!folder.WasSettled())
        return true;
    const bool isNew = m_kept.insert_or_assign(listing->path, Kept{listing, folder.State()}).second;
    m_bytes += isNew ? bytes : 0;
    return true;
}

ListingAhead::ListingAhead(const std::shared_ptr<ListingCache> &cache, ListingPtr root)
{
    if (root == nullptr || root->folders.size() < 2 || std::thread::hardware_concurrency() < 2)
        return;
    platform::StartHelperThread([cache, isOver = m_isOver, root = std::move(root)] {
        try {
            WalkFromTheEnd(cache, isOver).Go(*root);
        } catch (const std::bad_alloc &) {
            return; // the walk reads the other folders itself
        }
    });
}

} // namespace catalogue
