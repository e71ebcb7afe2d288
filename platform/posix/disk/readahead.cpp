#include "platform/posix/disk/readahead.h"

#include "platform/posix/disk/fetching.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::size_t kSpareBuffer = 96u << 10; // a larger one is freed with its file

} // namespace

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
    if (m_fetcher == nullptr)
        m_fetcher = std::make_shared<Fetcher>(m_source, m_helpersKept);
    const std::lock_guard lock(m_fetcher->mutex);
    for (const std::string &path : paths) {
        ComingFilePtr file;
        if (m_fetcher->spare.empty()) {
            file = std::make_shared<ComingFile>();
        } else {
            file = std::move(m_fetcher->spare.back());
            m_fetcher->spare.pop_back();
        }
        file->path = path;
        file->wanted = wanted;
        m_fetcher->files.push_back(std::move(file));
    }
    if (m_fetcher->helpers == 0)
        m_fetcher->StartHelpers(1);
    else if (m_fetcher->IsWorthWaking())
        m_fetcher->work.notify_one();
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
    for (auto before = fetcher.files.begin(); before != found; ++before)
        fetcher.Drop(**before);
    const auto gone = static_cast<std::size_t>(found - fetcher.files.begin()) + 1;
    fetcher.files.erase(fetcher.files.begin(), found + 1);
    fetcher.begun -= std::min(fetcher.begun, gone);
    if (fetcher.IsWorthWaking())
        fetcher.work.notify_one();
    return file->stage == FetchStage::Coming ? nullptr : file;
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
    m_isSlow = m_fetcher->helpers > m_helpersKept; // only these end when files come fast
    return m_isSlow;
}

// Whether the file is unchanged since it was fetched. Always true for one that is not a regular
// file, of which no bytes were fetched.
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
    if (goesOn && file->stage != FetchStage::Failed && IsUnchanged(*file)) {
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
    ComingFile &file = *closed.file;
    const bool isFree = file.stage == FetchStage::Ready && file.head.capacity() <= kSpareBuffer;
    if (!isFree || closed.fetcher->spare.size() >= kMostFilesHeld)
        return;
    file.stage = FetchStage::Coming;
    file.isDropped = false;
    file.headBytes = 0;
    file.digest.reset();
    file.tail.clear();
    closed.fetcher->spare.push_back(closed.file);
}

} // namespace platform::posix
