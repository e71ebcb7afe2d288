#include "platform/posix/disk/readahead.h"

#include "platform/posix/disk/fetching.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform::posix
{

ReadAheadFiles::ReadAheadFiles(std::shared_ptr<Files> source, unsigned processors)
    : m_source(std::move(source)), m_helpersKept(processors > 1 ? 1 : 0)
{
}

ReadAheadFiles::~ReadAheadFiles()
{
    ReadAheadFiles::ExpectNothing();
}

void ReadAheadFiles::Expect(const std::vector<std::string> &paths, const WantedBytes &wanted)
{
    if (paths.empty())
        return;
    Fetcher &fetcher = FetcherInUse();
    const std::lock_guard lock(fetcher.mutex);
    for (const std::string &path : paths)
        fetcher.Add(path, wanted);
    fetcher.Wake();
}

void ReadAheadFiles::ExpectInState(const std::vector<FileIdentity> &states,
                                   const WantedBytes &wanted)
{
    if (states.empty())
        return;
    Fetcher &fetcher = FetcherInUse();
    const std::lock_guard lock(fetcher.mutex);
    for (const FileIdentity &state : states) {
        ComingFile &file = fetcher.Add(state.path, wanted);
        file.known = state;
        file.isKnown = true;
    }
    fetcher.Wake();
}

Fetcher &ReadAheadFiles::FetcherInUse()
{
    if (m_fetcher == nullptr)
        m_fetcher = std::make_shared<Fetcher>(m_source, m_helpersKept);
    return *m_fetcher;
}

void ReadAheadFiles::ExpectNothing()
{
    m_isSlow = false;
    const auto fetcher = std::exchange(m_fetcher, nullptr);
    if (fetcher == nullptr)
        return;
    const std::lock_guard lock(fetcher->mutex);
    fetcher->isOver = true;
    for (const ComingFilePtr &file : fetcher->files)
        fetcher->Drop(*file);
    fetcher->files.clear();
    for (const int handle : std::exchange(fetcher->finished, {}))
        m_source->Close(handle);
    fetcher->work.notify_all();
}

// Removes the file at `path`, and all before it, from the expected files: those before it will not
// be opened any more. Returns: the file when a helper has it; else null.
ComingFilePtr ReadAheadFiles::Take(const std::string &path)
{
    Fetcher &fetcher = *m_fetcher;
    const auto lock = LockSoon(fetcher.mutex);
    const auto found = std::ranges::find(fetcher.files, path, &ComingFile::path);
    if (found == fetcher.files.end())
        return nullptr;
    ComingFilePtr file = *found;
    fetcher.RemoveUpTo(found);
    return file->stage == FetchStage::Coming ? nullptr : file;
}

// The file that was announced in this state, when a helper has it; it stays among the expected
// files. Else null; a file that no helper has begun is removed from them.
ComingFilePtr ReadAheadFiles::FindKnown(const FileIdentity &state)
{
    if (m_fetcher == nullptr)
        return nullptr;
    const auto lock = LockSoon(m_fetcher->mutex);
    const auto found = std::ranges::find(m_fetcher->files, state.path, &ComingFile::path);
    if (found == m_fetcher->files.end() || !(*found)->isKnown || (*found)->known != state)
        return nullptr;
    ComingFilePtr file = *found;
    if (file->stage != FetchStage::Coming)
        return file;
    m_fetcher->RemoveUpTo(found);
    m_fetcher->Keep(file);
    return nullptr;
}

// Removes a file that will not be opened from the expected files.
void ReadAheadFiles::Forget(const ComingFilePtr &file)
{
    const auto lock = LockSoon(m_fetcher->mutex);
    const auto found = std::ranges::find(m_fetcher->files, file);
    if (found == m_fetcher->files.end())
        return;
    m_fetcher->RemoveUpTo(found);
    m_fetcher->Drop(*file);
    m_fetcher->Keep(file);
}

// Runs a call of the logic, and notes when it took so long that it must have waited for a disk.
template <class Call>
auto ReadAheadFiles::Timed(const Call &call)
{
    const auto start = std::chrono::steady_clock::now();
    const auto result = call();
    m_isSlow |= result == -EAGAIN || std::chrono::steady_clock::now() - start > kFromMemory;
    return result;
}

bool ReadAheadFiles::PaysToExpect()
{
    return m_helpersKept > 0 || IsSlow();
}

bool ReadAheadFiles::IsSlow()
{
    if (m_fetcher == nullptr || !m_isSlow)
        return m_isSlow;
    const std::lock_guard lock(m_fetcher->mutex);
    m_isSlow = m_fetcher->helpers > m_helpersKept; // the additional ones end when files come fast
    return m_isSlow;
}

// Whether the file is unchanged since it was fetched. Always true for one that is not a regular
// file: no bytes of it were fetched.
bool ReadAheadFiles::IsUnchanged(const ComingFile &file)
{
    FileIdentity &now = m_now;
    return m_source->IdentifyOpen(file.handle, file.path, now) == 0 && now == file.identity &&
           (now.kind != FileKind::Regular || WasSettled(file.identity, file.openedAtNs));
}

int ReadAheadFiles::OpenToRead(const std::string &path, FileIdentity &identity)
{
    const ComingFilePtr file = m_fetcher != nullptr ? Take(path) : nullptr;
    if (file == nullptr)
        return OpenHere(path, identity);
    const auto isOpened = [&] { return file->stage > FetchStage::Opening; };
    const bool goesOn = isOpened() || m_fetcher->Wait(isOpened);
    const bool isOpen =
        goesOn && file->stage != FetchStage::Failed && file->stage != FetchStage::Same;
    if (isOpen && IsUnchanged(*file)) {
        identity = file->identity;
        m_open.push_back({file->handle, m_fetcher, file});
        return file->handle;
    }
    {
        const std::lock_guard lock(m_fetcher->mutex);
        m_fetcher->Drop(*file);
    }
    return goesOn ? OpenHere(path, identity) : -EINTR;
}

// Opens a file that no helper has. When all handles are in use, the fetched files are closed.
int ReadAheadFiles::OpenHere(const std::string &path, FileIdentity &identity)
{
    const auto open = [&] { return m_source->OpenToRead(path, identity); };
    const int handle = Timed(open);
    if ((handle != -EMFILE && handle != -ENFILE) || m_fetcher == nullptr)
        return handle;
    ExpectNothing();
    return open();
}

int ReadAheadFiles::Identify(const std::string &path, FileIdentity &identity)
{
    return m_source->Identify(path, identity);
}

// A file that a helper has found in another state stays among the expected ones, to be opened.
bool ReadAheadFiles::IsInState(const FileIdentity &state)
{
    constexpr std::chrono::milliseconds kStillNow{10};
    const ComingFilePtr file = FindKnown(state);
    const auto isExamined = [&] { return file->stage > FetchStage::Opening; };
    if (file != nullptr && !isExamined() && !m_fetcher->Wait(isExamined))
        return false; // the program is to end
    if (file != nullptr && file->stage != FetchStage::Same)
        return false;
    const bool isSame =
        (file != nullptr && std::chrono::steady_clock::now() - file->examinedAt <= kStillNow) ||
        (Timed([&] { return m_source->Identify(state.path, m_now); }) == 0 && m_now == state);
    if (isSame && file != nullptr)
        Forget(file);
    return isSame;
}

bool ReadAheadFiles::HasChangeTimes(const FileIdentity &file)
{
    return m_source->HasChangeTimes(file);
}

std::int64_t ReadAheadFiles::ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                                    bool mayWait)
{
    const auto open = std::ranges::find(m_open, handle, &OpenFile::handle);
    const auto read = [&] {
        return Timed([&] { return m_source->ReadAt(handle, offset, to, count, mayWait); });
    };
    if (open == m_open.end())
        return read();
    const ComingFile &file = *open->file;
    const auto isThere = [&] { return file.stage == FetchStage::Ready; };
    if (!mayWait && !IsSoon(isThere))
        return -EAGAIN;
    if (!isThere() && !open->fetcher->Wait(isThere))
        return -EINTR;
    const auto copy = [&](const ByteBuffer &from, std::int64_t at, std::int64_t end) {
        const auto length = std::min(static_cast<std::int64_t>(count), end - offset);
        std::memcpy(to, from.data() + (offset - at), static_cast<std::size_t>(length));
        return length;
    };
    const auto headEnd = static_cast<std::int64_t>(file.headBytes);
    const auto tailEnd = file.tailOffset + static_cast<std::int64_t>(file.tail.size());
    if (count > 0 && offset >= 0 && offset < headEnd)
        return copy(file.head, 0, headEnd);
    if (count > 0 && offset >= file.tailOffset && offset < tailEnd)
        return copy(file.tail, file.tailOffset, tailEnd);
    return read();
}

std::size_t ReadAheadFiles::TakeStart(int handle, ByteBuffer &bytes,
                                      std::unique_ptr<Digest> &digest)
{
    const auto open = std::ranges::find(m_open, handle, &OpenFile::handle);
    if (open == m_open.end())
        return 0;
    ComingFile &file = *open->file;
    if (!open->fetcher->WaitBriefly([&] { return file.stage == FetchStage::Ready; }))
        return 0;
    bytes.swap(file.head);
    digest = std::move(file.digest);
    return std::exchange(file.headBytes, 0);
}

void ReadAheadFiles::Close(int handle)
{
    const auto open = std::ranges::find(m_open, handle, &OpenFile::handle);
    if (open == m_open.end()) {
        m_source->Close(handle);
        return;
    }
    const OpenFile closed = std::move(*open);
    m_open.erase(open);
    const auto lock = LockSoon(closed.fetcher->mutex);
    closed.fetcher->Finish(*closed.file);
    closed.fetcher->Keep(closed.file);
}

} // namespace platform::posix
