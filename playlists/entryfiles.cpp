#include "playlists/entryfiles.h"

#include "platform/helperthread.h"
#include "runtime/codepage.h"
#include "runtime/text.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>

namespace playlists
{

namespace
{

// Folders that may contain mount points named after a drive letter.
constexpr std::string_view kLetterMounts[] = {"/mnt/", "/media/"};

bool IsFile(const std::string &path)
{
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

std::string WithSeparators(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

void AddPlace(std::vector<std::string> &places, std::string place)
{
    if (place.starts_with('/') && std::find(places.begin(), places.end(), place) == places.end())
        places.push_back(std::move(place));
}

bool IsLetterPath(std::string_view path)
{
    const char letter = path.empty() ? '\0' : static_cast<char>(path[0] | 0x20);
    return path.size() > 2 && letter >= 'a' && letter <= 'z' && path[1] == ':' &&
           (path[2] == '\\' || path[2] == '/');
}

// The mount points that may have what is on the drive with this letter.
std::vector<std::string> MountsOfLetter(char letter, const ListPlace &place)
{
    std::vector<std::string> mounts;
    for (const std::string_view folder : kLetterMounts) {
        const std::string mount =
            std::string(folder) + static_cast<char>(static_cast<unsigned char>(letter) | 0x20);
        if (std::find(place.mounts.begin(), place.mounts.end(), mount) != place.mounts.end())
            mounts.push_back(mount);
    }
    mounts.push_back(place.drive);
    return mounts;
}

} // namespace

std::vector<std::string> PlacesOfEntry(std::string_view path, const ListPlace &place)
{
    std::vector<std::string> spellings{std::string(path)};
    if (!place.isUtf8)
        spellings.push_back(runtime::TextOfBytes(path));
    // When the name ends with "%", the first three of the four signs are taken as the separator
    // "%%%", and the path begins with the last one.
    if (const std::size_t begin = path.find_first_not_of('%'); begin != 0)
        for (std::size_t i = 0, count = spellings.size(); i < count; ++i)
            spellings.push_back(spellings[i].substr(std::min(begin, spellings[i].size())));
    std::vector<std::string> places;
    for (const std::string &spelling : spellings)
        AddPlace(places, EntryPath(spelling, place.folder, place.playerDrive));
    for (const std::string &spelling : spellings)
        AddPlace(places, WithSeparators(EntryPath(spelling, place.folder, place.playerDrive)));
    std::erase_if(spellings, [](const std::string &spelling) { return !IsLetterPath(spelling); });
    if (!spellings.empty())
        for (const std::string &mount : MountsOfLetter(spellings[0][0], place))
            for (const std::string &spelling : spellings)
                AddPlace(places, mount + WithSeparators(spelling.substr(2)));
    return places;
}

const FileFinder::Names &FileFinder::NamesIn(const std::string &folder)
{
    const auto [at, isNew] = m_folders.try_emplace(folder);
    if (isNew) {
        std::error_code failure;
        for (std::filesystem::directory_iterator entry(folder, failure), end;
             !failure && entry != end; entry.increment(failure)) {
            const std::string name = entry->path().filename().native();
            at->second.emplace(runtime::UpperText(name), name);
        }
    }
    return at->second;
}

// Resolves the parts of the path one by one: each as it is if that exists, else as the first name
// that differs only in letter case.
std::optional<std::string> FileFinder::FindFolded(const std::string &path)
{
    std::string found;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t begin = path.find_first_not_of('/', at);
        if (begin == std::string::npos)
            break;
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string name = path.substr(begin, end - begin);
        at = end;
        if (name == "." || name == "..") {
            found.append("/").append(name);
            continue;
        }
        const Names &names = NamesIn(found.empty() ? "/" : found);
        const auto [first, last] = names.equal_range(runtime::UpperText(name));
        const std::string *best = nullptr;
        for (auto candidate = first; candidate != last; ++candidate)
            if (candidate->second == name ||
                (best == nullptr || (*best != name && candidate->second < *best)))
                best = &candidate->second;
        if (best == nullptr)
            return std::nullopt;
        found.append("/").append(*best);
    }
    return IsFile(found) ? std::optional(found) : std::nullopt;
}

std::optional<std::string> FileFinder::Find(const std::vector<std::string> &places)
{
    for (const std::string &place : places)
        if (IsFile(place))
            return place;
    for (const std::string &place : places)
        if (auto found = FindFolded(place))
            return found;
    return std::nullopt;
}

struct EntrySearch::Shared {
    static std::atomic<int> threads; // that have not ended yet

    std::vector<std::vector<std::string>> places; // used by the thread only
    std::atomic<bool> ended = false;
    std::mutex lock; // for `found`
    std::vector<FoundEntry> found;

    void Run()
    {
        FileFinder finder;
        for (std::size_t i = 0; i < places.size() && !ended; ++i) {
            FoundEntry entry{i, finder.Find(places[i])};
            const std::lock_guard<std::mutex> guard(lock);
            found.push_back(std::move(entry));
        }
    }
};

std::atomic<int> EntrySearch::Shared::threads = 0;

EntrySearch::EntrySearch(std::vector<std::vector<std::string>> places, int mostThreads)
    : m_shared(std::make_shared<Shared>()), m_count(places.size())
{
    m_shared->places = std::move(places);
    const auto run = [shared = m_shared] {
        shared->Run();
        --Shared::threads;
    };
    if (++Shared::threads <= mostThreads && platform::StartHelperThread(run))
        return;
    --Shared::threads;
    m_count = 0;
}

EntrySearch::~EntrySearch()
{
    m_shared->ended = true;
}

std::vector<FoundEntry> EntrySearch::Take()
{
    std::vector<FoundEntry> taken;
    const std::lock_guard<std::mutex> guard(m_shared->lock);
    taken.swap(m_shared->found);
    m_taken += taken.size();
    return taken;
}

bool EntrySearch::Done() const
{
    return m_taken == m_count;
}

} // namespace playlists
