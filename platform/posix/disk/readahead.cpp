#include "platform/posix/disk/readahead.h"

#include "platform/endrequest.h"
#include "platform/posix/disk/helperthread.h"

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <new>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::size_t kMostFilesHeld = 64;
constexpr std::size_t kHandlesShared = 4; // a quarter of the process's handles may be used
constexpr std::size_t kBytesHeld = 8u << 20;
constexpr std::int64_t kLongestHead = 256 << 10; // a longer one is read only when it is needed
constexpr std::size_t kSpareBuffer = 96u << 10;  // a larger one is freed with its file
constexpr int kMostHelpers = 16;
// A read from memory takes less than this time, so the logic does not sleep before.
constexpr std::chrono::microseconds kFromMemory{50};
constexpr std::chrono::microseconds kPatience{200}; // then another helper is started
constexpr std::chrono::microseconds kAskForEnd = std::chrono::milliseconds(50);
constexpr int kFastFiles = 32; // after so many fast files in a row one helper ends

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

// How many fetched files may be open at a time, so that handles remain for the rest of the program.
std::size_t FilesHeld()
{
    rlimit handles = {};
    if (getrlimit(RLIMIT_NOFILE, &handles) != 0)
        return 1;
    return static_cast<std::size_t>(
        std::clamp<rlim_t>(handles.rlim_cur / kHandlesShared, 1, kMostFilesHeld));
}

// Locks a mutex that is held for less time than a sleep takes.
std::unique_lock<std::mutex> LockSoon(std::mutex &mutex)
{
    constexpr int kTries = 200;
    for (int i = 0; i < kTries; ++i)
        if (mutex.try_lock())
            return {mutex, std::adopt_lock};
    return std::unique_lock(mutex);
}

// Whether the condition becomes true within the time of a read from memory.
template <class Condition>
bool IsSoon(const Condition &condition)
{
    if (condition())
        return true;
    const auto start = std::chrono::steady_clock::now();
    while (!condition() && std::chrono::steady_clock::now() - start < kFromMemory)
        continue;
    return condition();
}

} // namespace

// One expected file. The mutex of Shared guards isDropped and heldBytes. The helper alone uses the
// other members until the stage is reached from which the logic may: Reading for the handle and the
// identity, Ready for the bytes.
struct ReadAheadFiles::ComingFile {
    std::string path;
    WantedBytes wanted;
    std::atomic<Stage> stage = Stage::Coming;
    bool isDropped = false; // the helper that works on it must close it
    int handle = -1;
    FileIdentity identity;
    std::int64_t openedAtNs = 0;
    ByteBuffer head;
    std::size_t headBytes = 0;      // in use
    std::unique_ptr<Digest> digest; // of those
    ByteBuffer tail;
    std::int64_t tailOffset = 0;
    std::size_t heldBytes = 0; // its part of Shared::bytes
};

struct ReadAheadFiles::Shared : std::enable_shared_from_this<Shared> {
    Shared(std::shared_ptr<Files> from, int kept) : source(std::move(from)), helpersKept(kept) {}

    [[nodiscard]] bool HasWork() const
    {
        return begun < files.size() && begun + finished.size() < filesHeld && bytes < kBytesHeld;
    }
    // Whether the waiting helpers are woken: only when there is room for several files.
    [[nodiscard]] bool IsWorthWaking() const
    {
        return idle > 0 && begun <= filesHeld / 2 && HasWork();
    }
    void Help();
    bool HelpOnce(std::unique_lock<std::mutex> &lock);
    void Fetch(ComingFile &file);
    void StartHelpers(int count);
    void Drop(ComingFile &file);
    void Finish(ComingFile &file);
    void Announce(ComingFile &file, Stage stage);
    template <class Condition>
    bool Wait(const Condition &condition);

    const std::shared_ptr<Files> source; // with ReadAheadFiles
    const int helpersKept;               // where files come fast
    const std::size_t filesHeld = FilesHeld();

    std::atomic<bool> isWaiting = false; // the logic does; set under the mutex
    std::mutex mutex;                    // guards what follows
    std::condition_variable work;        // for helpers: a file may be fetched, or isOver
    std::condition_variable arrived;     // for the logic: a stage has changed
    std::deque<FilePtr> files;           // in the order in which they will be opened
    std::size_t begun = 0;               // files at the front that have a helper
    std::size_t bytes = 0;               // of the files that are Ready
    std::vector<FilePtr> spare;          // for their buffers
    std::vector<int> finished;           // handles that the next helper closes
    int helpers = 0;
    int idle = 0; // helpers that wait
    bool isOver = false;
};

ReadAheadFiles::ReadAheadFiles(std::shared_ptr<Files> source, unsigned processors)
    : m_source(std::move(source)), m_helpersKept(processors > 1 ? 1 : 0)
{
}

ReadAheadFiles::~ReadAheadFiles()
{
    ReadAheadFiles::ExpectNothing();
}

// Sets the stage and wakes the logic if it waits. Either the logic sees the new stage, or this
// procedure sees that the logic waits. On a helper thread.
void ReadAheadFiles::Shared::Announce(ComingFile &file, Stage stage)
{
    file.stage = stage;
    if (!isWaiting)
        return;
    const std::lock_guard lock(mutex);
    arrived.notify_all();
}

// Opens the file and reads the requested parts. On a helper thread.
void ReadAheadFiles::Shared::Fetch(ComingFile &file)
{
    file.openedAtNs = source->StampClockNs();
    file.handle = source->OpenToRead(file.path, file.identity);
    Announce(file, file.handle < 0 ? Stage::Failed : Stage::Reading);
    if (file.handle < 0 || file.identity.kind != FileKind::Regular)
        return;
    const std::int64_t size = file.identity.sizeBytes;
    const auto extend = [&](std::int64_t wanted) {
        // A damaged size can make this negative.
        const auto count = static_cast<std::size_t>(
            std::clamp(wanted, std::int64_t{0}, std::min(size, kLongestHead)));
        if (count <= file.headBytes)
            return;
        MakeRoom(file.head, file.headBytes, count);
        file.headBytes += ReadFully(*source, file.handle, static_cast<std::int64_t>(file.headBytes),
                                    file.head.data() + file.headBytes, count - file.headBytes);
    };
    extend(file.wanted.first);
    if (file.wanted.head != nullptr)
        extend(file.wanted.head({file.head.data(), file.headBytes}, size));
    if (file.wanted.digest != nullptr)
        file.digest = file.wanted.digest({file.head.data(), file.headBytes}, size);
    file.tailOffset = std::max(size - file.wanted.last, static_cast<std::int64_t>(file.headBytes));
    file.tail.resize(static_cast<std::size_t>(std::max<std::int64_t>(size - file.tailOffset, 0)));
    file.tail.resize(
        ReadFully(*source, file.handle, file.tailOffset, file.tail.data(), file.tail.size()));
}

// Fetches the next file. Returns: whether that was as fast as from memory.
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
    lock = LockSoon(mutex);
    if (!isFast && idle > 0 && HasWork())
        work.notify_one();
    if (file->stage == Stage::Reading)
        file->stage = Stage::Ready;
    file->heldBytes = file->head.size();
    bytes += file->heldBytes;
    if (file->isDropped)
        Drop(*file);
    if (isWaiting)
        arrived.notify_all();
    return isFast;
}

// A helper thread. It ends when files come as fast as from memory and fewer helpers are enough.
void ReadAheadFiles::Shared::Help()
{
    std::vector<int> handles;
    std::unique_lock lock(mutex);
    for (int fast = 0; !isOver && (fast < kFastFiles || helpers <= helpersKept);) {
        const bool hasWork = HasWork();
        if (hasWork)
            fast = HelpOnce(lock) ? fast + 1 : 0;
        handles.swap(finished);
        if (!handles.empty()) {
            lock.unlock();
            for (const int handle : handles)
                source->Close(handle);
            handles.clear();
            lock.lock();
            continue;
        }
        if (hasWork)
            continue;
        ++idle;
        work.wait(lock, [&] { return isOver || HasWork() || !finished.empty(); });
        --idle;
    }
    --helpers;
}

// Closes a file that has been fetched; if its helper is still working, the helper closes it. The
// mutex must be locked.
void ReadAheadFiles::Shared::Drop(ComingFile &file)
{
    file.isDropped = true;
    if (file.stage == Stage::Opening || file.stage == Stage::Reading)
        return;
    bytes -= std::exchange(file.heldBytes, 0);
    if (file.handle >= 0)
        source->Close(file.handle);
    file.handle = -1;
}

// The same for a file that the logic has read: the next helper closes it, if there will be one. The
// mutex must be locked.
void ReadAheadFiles::Shared::Finish(ComingFile &file)
{
    const bool isSoonClosed = helpers > 0 && file.stage == Stage::Ready && HasWork();
    if (isSoonClosed)
        finished.push_back(std::exchange(file.handle, -1));
    Drop(file);
}

// When no thread can be started, the existing ones or the logic itself do the work. The mutex must
// be locked.
void ReadAheadFiles::Shared::StartHelpers(int count)
{
    while (count-- > 0 && helpers < kMostHelpers &&
           StartHelperThread([self = shared_from_this()] { self->Help(); }))
        ++helpers;
}

// Waits until `condition` is true; the longer this takes, the more helpers are started. Returns:
// false when the program is to end.
template <class Condition>
bool ReadAheadFiles::Shared::Wait(const Condition &condition)
{
    if (IsSoon(condition))
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
        m_shared = std::make_shared<Shared>(m_source, m_helpersKept);
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
    for (const int handle : std::exchange(shared->finished, {}))
        m_source->Close(handle);
    shared->work.notify_all();
}

// Removes the file at `path`, and all before it, from the expected files: those before it will not
// be opened any more. Returns: the file when a helper has it; else null.
ReadAheadFiles::FilePtr ReadAheadFiles::Take(const std::string &path)
{
    Shared &shared = *m_shared;
    const auto lock = LockSoon(shared.mutex);
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

// Runs a call of the logic, and notes when it took so long that it must have waited for a disk.
template <class Call>
auto ReadAheadFiles::Timed(const Call &call)
{
    const auto start = std::chrono::steady_clock::now();
    const auto result = call();
    m_isSlow |= result == -EAGAIN || std::chrono::steady_clock::now() - start > kPatience;
    return result;
}

bool ReadAheadFiles::PaysToExpect()
{
    return m_helpersKept > 0 || IsSlow();
}

bool ReadAheadFiles::IsSlow()
{
    if (m_shared == nullptr || !m_isSlow)
        return m_isSlow;
    const std::lock_guard lock(m_shared->mutex);
    m_isSlow = m_shared->helpers > m_helpersKept; // only these end when files come fast
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
    const FilePtr file = m_shared != nullptr ? Take(path) : nullptr;
    if (file == nullptr)
        return OpenHere(path, identity);
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
    return goesOn ? OpenHere(path, identity) : -EINTR;
}

// Opens a file that no helper has. When all handles are in use, the fetched files are closed.
int ReadAheadFiles::OpenHere(const std::string &path, FileIdentity &identity)
{
    const auto open = [&] { return m_source->OpenToRead(path, identity); };
    const int handle = Timed(open);
    if ((handle != -EMFILE && handle != -ENFILE) || m_shared == nullptr)
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
    const auto isThere = [&] { return file.stage == Stage::Ready; };
    if (!mayWait && !IsSoon(isThere))
        return -EAGAIN;
    if (!isThere() && !open->shared->Wait(isThere))
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
    if (!IsSoon([&] { return file.stage == Stage::Ready; }))
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
    const auto lock = LockSoon(closed.shared->mutex);
    closed.shared->Finish(*closed.file);
    ComingFile &file = *closed.file;
    const bool isFree = file.stage == Stage::Ready && file.head.capacity() <= kSpareBuffer;
    if (!isFree || closed.shared->spare.size() >= kMostFilesHeld)
        return;
    file.stage = Stage::Coming;
    file.isDropped = false;
    file.headBytes = 0;
    file.digest.reset();
    file.tail.clear();
    closed.shared->spare.push_back(closed.file);
}

} // namespace platform::posix
