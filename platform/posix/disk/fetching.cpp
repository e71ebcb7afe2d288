#include "platform/posix/disk/fetching.h"

#include "platform/endrequest.h"
#include "platform/helperthread.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::size_t kHandlesShared = 4; // at most a quarter of the process's handles is used
constexpr std::size_t kBytesHeld = 8u << 20;
constexpr std::size_t kSpareBuffer = 96u << 10;  // a larger one is freed with its file
constexpr std::int64_t kLongestHead = 256 << 10; // a longer one is read only when it is needed
constexpr int kMostHelpers = 16;
constexpr std::chrono::microseconds kAskForEnd = std::chrono::milliseconds(50);
// When the wait for one file takes this long, more helpers are started at once.
constexpr std::chrono::microseconds kLongWait = std::chrono::milliseconds(50);
constexpr int kFastFiles = 32; // after so many fast files in a row one helper ends

// Reads a part of a file into `to`, until `count` bytes have been read, the file ends or a read
// fails. If `mayWait` is false, `failure` gets the errno when the read would have to wait
// (Files::ReadAt).
// Returns: the number of bytes read.
struct PartReader {
    Files &source;
    int handle;
    bool mayWait;
    int failure = 0;

    std::size_t Read(std::int64_t offset, char *to, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count && failure == 0) {
            const auto got = source.ReadAt(handle, offset + static_cast<std::int64_t>(done),
                                           to + done, count - done, mayWait);
            if (got < 0 && !mayWait)
                failure = static_cast<int>(-got);
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }
};

// How many fetched files may be open at a time, so that handles remain for the rest of the program.
std::size_t FilesHeld()
{
    rlimit handles = {};
    if (getrlimit(RLIMIT_NOFILE, &handles) != 0)
        return 1;
    return static_cast<std::size_t>(
        std::clamp<rlim_t>(handles.rlim_cur / kHandlesShared, 1, kMostFilesHeld));
}

} // namespace

void Slowness::Add(bool isSlow)
{
    constexpr int kMost = 2 * kEnough; // a bound, so that fast files soon change the result again
    m_points = std::clamp(m_points + (isSlow ? kOfOne : -1), 0, kMost);
}

std::unique_lock<std::mutex> LockSoon(std::mutex &mutex)
{
    constexpr int kTries = 200;
    for (int i = 0; i < kTries; ++i)
        if (mutex.try_lock())
            return {mutex, std::adopt_lock};
    return std::unique_lock(mutex);
}

Fetcher::Fetcher(std::shared_ptr<Files> from, int kept)
    : source(std::move(from)), helpersKept(kept), filesHeld(FilesHeld())
{
}

bool Fetcher::HasWork() const
{
    return begun < files.size() && begun + finished.size() < filesHeld && bytes < kBytesHeld;
}

// Sets the stage, and wakes the logic if it waits. Either the logic sees the new stage before it
// waits, or this procedure sees that it waits. Called on a helper thread.
void Fetcher::Announce(ComingFile &file, FetchStage stage)
{
    file.stage = stage;
    if (!isWaiting)
        return;
    const std::lock_guard lock(mutex);
    arrived.notify_all();
}

// Whether the file is in the state that is known.
bool Fetcher::IsSame(ComingFile &file)
{
    if (!file.isKnown)
        return false;
    file.examinedAt = std::chrono::steady_clock::now();
    return source->Identify(file.path, file.identity) == 0 && file.identity == file.known;
}

// Fetches one file: opens it and reads the requested parts, unless it is in the state that is
// known. Sets its stage to Reading or Failed as soon as it is open, or cannot be opened. Returns:
// Same when it is in that state; Partly when a read failed, or would have had to wait while the
// logic fetches; else Whole, also for a file that cannot be opened or is no regular file. Errors:
// std::bad_alloc.
Fetcher::Fetched Fetcher::Fetch(ComingFile &file, By who)
{
    if (IsSame(file))
        return Fetched::Same;
    file.openedAtNs = source->StampClockNs();
    file.handle = source->OpenToRead(file.path, file.identity);
    Announce(file, file.handle < 0 ? FetchStage::Failed : FetchStage::Reading);
    if (file.handle < 0 || file.identity.kind != FileKind::Regular)
        return Fetched::Whole;
    PartReader reader{*source, file.handle, who == By::Helper};
    const std::int64_t size = file.identity.sizeBytes;
    const auto extend = [&](std::int64_t wanted) {
        // A damaged size can make this negative.
        const auto count = static_cast<std::size_t>(
            std::clamp(wanted, std::int64_t{0}, std::min(size, kLongestHead)));
        if (count <= file.headBytes)
            return;
        MakeRoom(file.head, file.headBytes, count);
        file.headBytes += reader.Read(static_cast<std::int64_t>(file.headBytes),
                                      file.head.data() + file.headBytes, count - file.headBytes);
    };
    extend(file.wanted.first);
    if (file.wanted.head != nullptr)
        extend(file.wanted.head({file.head.data(), file.headBytes}, size));
    if (file.wanted.digest != nullptr && reader.failure == 0)
        file.digest = file.wanted.digest({file.head.data(), file.headBytes}, size);
    file.tailOffset = std::max(size - file.wanted.last, static_cast<std::int64_t>(file.headBytes));
    file.tail.resize(static_cast<std::size_t>(std::max<std::int64_t>(size - file.tailOffset, 0)));
    file.tail.resize(reader.Read(file.tailOffset, file.tail.data(), file.tail.size()));
    if (reader.failure == EOPNOTSUPP)
        mayLogicHelp = false;
    return reader.failure == 0 ? Fetched::Whole : Fetched::Partly;
}

// Fetches the next file. Returns: whether that was as fast as from memory.
bool Fetcher::HelpOnce(std::unique_lock<std::mutex> &lock, By who)
{
    const ComingFilePtr file = files[begun++];
    file->stage = FetchStage::Opening;
    lock.unlock();
    const auto start = std::chrono::steady_clock::now();
    Fetched fetched = Fetched::Whole;
    try {
        fetched = Fetch(*file, who);
    } catch (const std::bad_alloc &) {
        file->tail.clear(); // the logic reads what is missing
    }
    const bool isFast =
        fetched != Fetched::Partly && std::chrono::steady_clock::now() - start < kFromMemory;
    lock = LockSoon(mutex);
    slowness.Add(!isFast);
    if (!isFast && idle > 0 && HasWork())
        work.notify_one();
    if (fetched == Fetched::Same)
        file->stage = FetchStage::Same;
    else if (file->stage == FetchStage::Reading)
        file->stage = FetchStage::Ready;
    file->heldBytes = file->head.size();
    bytes += file->heldBytes;
    if (file->isDropped)
        Drop(*file);
    if (isWaiting)
        arrived.notify_all();
    return isFast;
}

// Called on the thread of the logic: fetches the next file, unless files come slowly. Returns:
// whether it did.
bool Fetcher::HelpOfLogic()
{
    std::unique_lock lock = LockSoon(mutex);
    if (!mayLogicHelp || slowness.IsSlow() || !HasWork())
        return false;
    HelpOnce(lock, By::Logic);
    return true;
}

// The work of a helper thread. It ends when files come as fast as from memory and fewer helpers are
// enough.
void Fetcher::Help()
{
    std::vector<int> handles;
    std::unique_lock lock(mutex);
    for (int fast = 0; !isOver && (fast < kFastFiles || helpers <= helpersKept);) {
        const bool hasWork = HasWork();
        if (hasWork)
            fast = HelpOnce(lock, By::Helper) ? fast + 1 : 0;
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

ComingFile &Fetcher::Add(const std::string &path, const WantedBytes &wanted)
{
    ComingFilePtr file;
    if (spare.empty()) {
        file = std::make_shared<ComingFile>();
    } else {
        file = std::move(spare.back());
        spare.pop_back();
    }
    file->path = path;
    file->wanted = wanted;
    files.push_back(std::move(file));
    return *files.back();
}

void Fetcher::Wake()
{
    if (helpers == 0)
        StartHelpers(1);
    else if (IsWorthWaking())
        work.notify_one();
}

void Fetcher::RemoveUpTo(const std::deque<ComingFilePtr>::iterator &last)
{
    for (auto before = files.begin(); before != last; ++before)
        Drop(**before);
    const auto gone = static_cast<std::size_t>(last - files.begin()) + 1;
    files.erase(files.begin(), last + 1);
    begun -= std::min(begun, gone);
    if (IsWorthWaking())
        work.notify_one();
}

void Fetcher::Keep(const ComingFilePtr &file)
{
    const bool isDone = file->stage == FetchStage::Ready || file->stage == FetchStage::Same ||
                        file->stage == FetchStage::Coming;
    if (!isDone || file->head.capacity() > kSpareBuffer || spare.size() >= kMostFilesHeld)
        return;
    file->stage = FetchStage::Coming;
    file->isKnown = false;
    file->isDropped = false;
    file->headBytes = 0;
    file->digest.reset();
    file->tail.clear();
    spare.push_back(file);
}

void Fetcher::Drop(ComingFile &file)
{
    file.isDropped = true;
    if (file.stage == FetchStage::Opening || file.stage == FetchStage::Reading)
        return;
    bytes -= std::exchange(file.heldBytes, 0);
    if (file.handle >= 0)
        source->Close(file.handle);
    file.handle = -1;
}

void Fetcher::Finish(ComingFile &file)
{
    const bool isSoonClosed = helpers > 0 && file.stage == FetchStage::Ready && HasWork();
    if (isSoonClosed)
        finished.push_back(std::exchange(file.handle, -1));
    Drop(file);
}

void Fetcher::StartHelpers(int count)
{
    while (count-- > 0 && helpers < kMostHelpers &&
           StartHelperThread([self = shared_from_this()] { self->Help(); }))
        ++helpers;
}

// How long the logic waits before it checks whether more helpers are needed.
std::chrono::microseconds Fetcher::Patience() const
{
    return helpers < kMostHelpers ? kFromMemory : kAskForEnd;
}

// Starts more helpers when the logic, which has waited for one file so long, needs them. Returns:
// false when the program is to end.
bool Fetcher::GoOnWaiting(std::chrono::steady_clock::duration waited)
{
    if (slowness.IsSlow() || waited >= kLongWait)
        StartHelpers(helpers);
    return !IsEndRequested();
}

} // namespace platform::posix
