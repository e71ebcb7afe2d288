#include "platform/posix/readahead.h"

#include "platform/endrequest.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <deque>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::size_t kFilesHeld = 64;
constexpr std::size_t kBytesHeld = 8u << 20;
constexpr std::int64_t kLongestHead = 256 << 10; // what is longer is read when it is asked for
constexpr std::size_t kSpareBuffer = 128u << 10; // a larger one goes with its file
constexpr int kMostHelpers = 16;
// A read from memory is over within this time: it is not worth a sleep.
constexpr std::chrono::microseconds kFromMemory{50};
// The logic sleeps this long before it has more files fetched at a time.
constexpr std::chrono::microseconds kPatience{200};
constexpr std::chrono::microseconds kAskForEnd = std::chrono::milliseconds(50);
constexpr int kFastFiles = 32; // one after the other: the logic reads the next ones as fast itself

enum class Stage { Coming, Opening, Reading, Ready, Failed };

// Reads up to `count` bytes from `offset` on into `to`; the count that could be read.
std::size_t ReadFully(Files &source, int handle, std::int64_t offset, char *to, std::size_t count)
{
    std::size_t done = 0;
    while (done < count) {
        const auto got = source.ReadAt(handle, offset + static_cast<std::int64_t>(done), to + done,
                                       count - done, true);
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

} // namespace

// One file that was said to come. The stage is set, and isDropped guarded, by the mutex of Shared;
// the rest is the helper's until the stage says that it is there: the handle and the identity from
// Reading on, the bytes when Ready.
struct ReadAheadFiles::ComingFile {
    std::string path;
    WantedBytes wanted;
    std::atomic<Stage> stage = Stage::Coming;
    bool isDropped = false; // the helper that has it closes it
    int handle = -1;
    FileIdentity identity;
    std::int64_t openedAtNs = 0;
    std::vector<char> head;
    std::size_t headBytes = 0; // in use
    std::vector<char> tail;
    std::int64_t tailOffset = 0;
};

struct ReadAheadFiles::Shared : std::enable_shared_from_this<Shared> {
    explicit Shared(std::shared_ptr<Files> from) : source(std::move(from)) {}

    [[nodiscard]] bool HasWork() const
    {
        return begun < files.size() && begun < kFilesHeld && bytes < kBytesHeld;
    }
    // Whether helpers that wait should go on: not for each single file that there is room for.
    [[nodiscard]] bool IsWorthWaking() const
    {
        return idle > 0 && begun <= kFilesHeld / 2 && HasWork();
    }
    void Help();
    bool HelpOnce(std::unique_lock<std::mutex> &lock);
    void Fetch(ComingFile &file);
    void StartHelpers(int count);
    void Drop(ComingFile &file);
    template <class Condition>
    bool Wait(const Condition &condition);

    const std::shared_ptr<Files> source; // with ReadAheadFiles

    std::mutex mutex;                // guards what follows
    std::condition_variable work;    // for helpers: a file may be fetched, or isOver
    std::condition_variable arrived; // for the logic: a stage has changed
    std::deque<FilePtr> files;       // in the order in which they will be opened
    std::size_t begun = 0;           // files at the front that have a helper
    std::size_t bytes = 0;           // of the files that are Ready
    std::vector<FilePtr> spare;      // for their buffers
    int helpers = 0;
    int idle = 0;           // helpers that wait
    bool isWaiting = false; // the logic does
    bool isOver = false;
};

ReadAheadFiles::ReadAheadFiles(std::shared_ptr<Files> source) : m_source(std::move(source)) {}

ReadAheadFiles::~ReadAheadFiles()
{
    ReadAheadFiles::ExpectNothing();
}

// Opens the file and reads what is wanted of it. On a helper thread.
void ReadAheadFiles::Shared::Fetch(ComingFile &file)
{
    file.openedAtNs = source->StampClockNs();
    file.handle = source->OpenToRead(file.path, file.identity);
    {
        const std::lock_guard lock(mutex);
        file.stage = file.handle < 0 ? Stage::Failed : Stage::Reading;
        if (isWaiting)
            arrived.notify_all();
    }
    if (file.handle < 0 || file.identity.kind != FileKind::Regular)
        return;
    const std::int64_t size = file.identity.sizeBytes;
    const auto extend = [&](std::int64_t wanted) {
        // A damaged size asks for less than nothing.
        const auto count = static_cast<std::size_t>(
            std::clamp(wanted, std::int64_t{0}, std::min(size, kLongestHead)));
        if (count <= file.headBytes)
            return;
        if (file.head.size() < count)
            file.head.resize(count);
        file.headBytes += ReadFully(*source, file.handle, static_cast<std::int64_t>(file.headBytes),
                                    file.head.data() + file.headBytes, count - file.headBytes);
    };
    extend(file.wanted.first);
    if (file.wanted.head != nullptr)
        extend(file.wanted.head({file.head.data(), file.headBytes}, size));
    file.tailOffset = std::max(size - file.wanted.last, static_cast<std::int64_t>(file.headBytes));
    file.tail.resize(static_cast<std::size_t>(std::max<std::int64_t>(size - file.tailOffset, 0)));
    file.tail.resize(
        ReadFully(*source, file.handle, file.tailOffset, file.tail.data(), file.tail.size()));
}

// Fetches the next file. Whether that went as fast as from memory.
bool ReadAheadFiles::Shared::HelpOnce(std::unique_lock<std::mutex> &lock)
{
    const FilePtr file = files[begun++];
    file->stage = Stage::Opening;
    lock.unlock();
    const auto start = std::chrono::steady_clock::now();
    try {
        Fetch(*file);
    } catch (const std::bad_alloc &) {
        file->tail.clear(); // the logic reads what is missing
    }
    const bool isFast = std::chrono::steady_clock::now() - start < kPatience;
    lock.lock();
    if (!isFast && idle > 0 && HasWork())
        work.notify_one();
    if (file->stage == Stage::Reading)
        file->stage = Stage::Ready;
    bytes += file->head.size();
    if (file->isDropped)
        Drop(*file);
    if (isWaiting)
        arrived.notify_all();
    return isFast;
}

// A helper thread. It goes where files come as fast as from memory.
void ReadAheadFiles::Shared::Help()
{
    std::unique_lock lock(mutex);
    for (int fast = 0; !isOver && fast < kFastFiles;) {
        if (HasWork()) {
            fast = HelpOnce(lock) ? fast + 1 : 0;
            continue;
        }
        ++idle;
        work.wait(lock, [&] { return isOver || HasWork(); });
        --idle;
    }
    --helpers;
}

// Lets go of a file that has been fetched, or leaves that to its helper. The mutex is held.
void ReadAheadFiles::Shared::Drop(ComingFile &file)
{
    file.isDropped = true;
    if (file.stage == Stage::Opening || file.stage == Stage::Reading)
        return;
    if (file.stage != Stage::Coming)
        bytes -= file.head.size();
    if (file.handle >= 0)
        source->Close(file.handle);
    file.handle = -1;
}

// Starts helpers with every signal blocked: they are the main thread's. The mutex is held.
void ReadAheadFiles::Shared::StartHelpers(int count)
{
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        for (; count > 0 && helpers < kMostHelpers; --count) {
            std::thread([self = shared_from_this()] { self->Help(); }).detach();
            ++helpers;
        }
    } catch (const std::system_error &) {
        count = 0; // no further thread to be had: those that are there do it, or the logic itself
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// Waits until `condition` holds, with more helpers the longer it takes. False when the end of the
// program is asked for.
template <class Condition>
bool ReadAheadFiles::Shared::Wait(const Condition &condition)
{
    const auto start = std::chrono::steady_clock::now();
    while (!condition() && std::chrono::steady_clock::now() - start < kFromMemory)
        continue;
    if (condition())
        return true;
    std::unique_lock lock(mutex);
    isWaiting = true;
    work.notify_all();
    bool isEnding = false;
    while (!condition() && !isEnding) {
        const bool isFull = helpers >= kMostHelpers;
        if (arrived.wait_for(lock, isFull ? kAskForEnd : kPatience, condition))
            break;
        StartHelpers(helpers);
        isEnding = IsEndRequested();
    }
    isWaiting = false;
    return !isEnding;
}

void ReadAheadFiles::Expect(const std::vector<std::string> &paths, const WantedBytes &wanted)
{
    if (paths.empty())
        return;
    if (m_shared == nullptr)
        m_shared = std::make_shared<Shared>(m_source);
    const std::lock_guard lock(m_shared->mutex);
    for (const std::string &path : paths) {
        FilePtr file;
        if (m_shared->spare.empty()) {
            file = std::make_shared<ComingFile>();
        } else {
            file = std::move(m_shared->spare.back());
            m_shared->spare.pop_back();
        }
        file->path = path;
        file->wanted = wanted;
        m_shared->files.push_back(std::move(file));
    }
    if (m_shared->helpers == 0)
        m_shared->StartHelpers(1);
    else if (m_shared->IsWorthWaking())
        m_shared->work.notify_one();
}

void ReadAheadFiles::ExpectNothing()
{
    m_isSlow = false;
    const auto shared = std::exchange(m_shared, nullptr);
    if (shared == nullptr)
        return;
    const std::lock_guard lock(shared->mutex);
    shared->isOver = true;
    for (const FilePtr &file : shared->files)
        shared->Drop(*file);
    shared->files.clear();
    shared->work.notify_all();
}

// The file at `path` where a helper has it, no longer among those that come; null otherwise. Those
// that were to come before it will not be opened any more.
ReadAheadFiles::FilePtr ReadAheadFiles::Take(const std::string &path)
{
    Shared &shared = *m_shared;
    const std::lock_guard lock(shared.mutex);
    const auto found = std::ranges::find(shared.files, path, &ComingFile::path);
    if (found == shared.files.end())
        return nullptr;
    FilePtr file = *found;
    for (auto before = shared.files.begin(); before != found; ++before)
        shared.Drop(**before);
    const auto gone = static_cast<std::size_t>(found - shared.files.begin()) + 1;
    shared.files.erase(shared.files.begin(), found + 1);
    shared.begun -= std::min(shared.begun, gone);
    if (shared.IsWorthWaking())
        shared.work.notify_one();
    return file->stage == Stage::Coming ? nullptr : file;
}

// Runs a call of the logic's own, and notes where it took as long as only a disk does.
template <class Call>
auto ReadAheadFiles::Timed(const Call &call)
{
    const auto start = std::chrono::steady_clock::now();
    const auto result = call();
    m_isSlow |= result == -EAGAIN || std::chrono::steady_clock::now() - start > kPatience;
    return result;
}

bool ReadAheadFiles::IsReadingSlow()
{
    if (m_shared == nullptr || !m_isSlow)
        return m_isSlow;
    const std::lock_guard lock(m_shared->mutex);
    m_isSlow = m_shared->helpers > 0; // the last of them goes where files come fast
    return m_isSlow;
}

// Whether the file is now what it was when it was fetched. What is no regular file has no bytes
// that could have changed.
bool ReadAheadFiles::IsUnchanged(const ComingFile &file) const
{
    FileIdentity now;
    return m_source->Identify(file.path, now) == 0 && now == file.identity &&
           (now.kind != FileKind::Regular || WasSettled(file.identity, file.openedAtNs));
}

int ReadAheadFiles::OpenToRead(const std::string &path, FileIdentity &identity)
{
    const FilePtr file = m_shared != nullptr ? Take(path) : nullptr;
    if (file == nullptr)
        return Timed([&] { return m_source->OpenToRead(path, identity); });
    const auto isOpened = [&] { return file->stage > Stage::Opening; };
    const bool goesOn = isOpened() || m_shared->Wait(isOpened);
    if (goesOn && file->stage != Stage::Failed && IsUnchanged(*file)) {
        identity = file->identity;
        m_open.push_back({file->handle, m_shared, file});
        return file->handle;
    }
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->Drop(*file);
    }
    return goesOn ? m_source->OpenToRead(path, identity) : -EINTR;
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
    const auto isThere = [&] { return file.stage == Stage::Ready; };
    if (!isThere() && !mayWait)
        return -EAGAIN;
    if (!isThere() && !open->shared->Wait(isThere))
        return -EINTR;
    const auto copy = [&](const std::vector<char> &from, std::int64_t at, std::int64_t end) {
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

void ReadAheadFiles::Close(int handle)
{
    const auto open = std::ranges::find(m_open, handle, &OpenFile::handle);
    if (open == m_open.end()) {
        m_source->Close(handle);
        return;
    }
    const OpenFile closed = std::move(*open);
    m_open.erase(open);
    const std::lock_guard lock(closed.shared->mutex);
    closed.shared->Drop(*closed.file);
    ComingFile &file = *closed.file;
    const bool isFree = file.stage == Stage::Ready && file.head.capacity() <= kSpareBuffer;
    if (!isFree || closed.shared->spare.size() >= kFilesHeld)
        return;
    file.stage = Stage::Coming;
    file.isDropped = false;
    file.headBytes = 0;
    file.tail.clear();
    closed.shared->spare.push_back(closed.file);
}

} // namespace platform::posix
