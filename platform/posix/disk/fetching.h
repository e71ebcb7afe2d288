// platform/posix/disk/fetching.h - the queue of ReadAheadFiles: the files that are expected, and
// the helper threads that open them and read the parts that will be needed. A helper only handles
// file bytes and uses no other state of the program.
#pragma once

#include "platform/disk/files.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace platform::posix
{

// How far the fetching of a file has come. Same: it is in the state that is known, and was not
// opened.
enum class FetchStage { Coming, Opening, Reading, Ready, Same, Failed };

// One expected file. The logic sets path, known, isKnown and wanted while it has the mutex of
// Fetcher locked, before any thread fetches the file. The mutex also guards isDropped and
// heldBytes. All other members belong to the thread that fetches the file until it sets `stage`;
// after that the logic may read: at Reading handle, identity and openedAtNs, at Ready the bytes and
// the digest too, at Same only examinedAt.
struct ComingFile {
    std::string path;
    FileIdentity known; // the state in which it need not be opened
    bool isKnown = false;
    WantedBytes wanted;
    std::atomic<FetchStage> stage = FetchStage::Coming;
    bool isDropped = false; // the helper that works on it must close it
    int handle = -1;
    FileIdentity identity;
    std::int64_t openedAtNs = 0;
    std::chrono::steady_clock::time_point examinedAt; // and found in the state that is known
    ByteBuffer head;
    std::size_t headBytes = 0;      // how many of them were read
    std::unique_ptr<Digest> digest; // what was found in these bytes
    ByteBuffer tail;
    std::int64_t tailOffset = 0;
    std::size_t heldBytes = 0; // its part of Fetcher::bytes
};
using ComingFilePtr = std::shared_ptr<ComingFile>; // owned by the logic and by its helper

inline constexpr std::size_t kMostFilesHeld = 64;
// The longest time of an operation on a file that is in memory.
inline constexpr std::chrono::microseconds kFromMemory{200};

// Whether operations on files have to wait for a disk. One slow operation does not show that: the
// thread may have waited for a processor. Three in a row do, and so does a smaller share that
// continues.
class Slowness
{
public:
    void Add(bool isSlow);
    [[nodiscard]] bool IsSlow() const { return m_points >= kEnough; }

private:
    static constexpr int kOfOne = 2; // a fast operation removes one point again
    static constexpr int kEnough = 3 * kOfOne;
    int m_points = 0;
};

// Locks a mutex that others hold only for a short time: tries several times before it sleeps.
std::unique_lock<std::mutex> LockSoon(std::mutex &mutex);

// The queue of the expected files. The logic and its helpers own it together: a helper that is
// reading may outlive the others.
struct Fetcher : std::enable_shared_from_this<Fetcher> {
    // `kept`: the number of helpers where files come fast.
    Fetcher(std::shared_ptr<Files> from, int kept);

    // For the logic; the mutex must not be locked.
    // Waits until `condition` is true, and meanwhile fetches files itself that are in memory; when
    // that takes long, or files come slowly, more helpers are started. Returns: false when the
    // program is to end.
    template <class Condition>
    bool Wait(const Condition &condition);
    // The same for a file that should be in memory: waits only for as long as a busy processor may
    // take. Returns: whether the condition is true.
    template <class Condition>
    bool WaitBriefly(const Condition &condition);

    // For the logic; the mutex must be locked.
    // When no thread can be started, the existing ones or the logic itself do the work.
    void StartHelpers(int count);
    // Whether the waiting helpers are woken: only when there is room for several files.
    [[nodiscard]] bool IsWorthWaking() const
    {
        return idle > 0 && begun <= filesHeld / 2 && HasWork();
    }
    // Adds a file to the expected ones. After all of them, Wake.
    ComingFile &Add(const std::string &path, const WantedBytes &wanted);
    void Wake();
    // Removes the file and all before it from the expected ones: those before it will not be opened
    // any more, and are dropped.
    void RemoveUpTo(const std::deque<ComingFilePtr>::iterator &last);
    // Keeps the memory of a file for another one, unless a helper may still use it.
    void Keep(const ComingFilePtr &file);
    // Closes a file that has been fetched; if its helper is still working, the helper closes it.
    void Drop(ComingFile &file);
    // The same for a file that the logic has read: the next helper closes it, if there will be one.
    void Finish(ComingFile &file);

    const std::shared_ptr<Files> source; // shared with ReadAheadFiles
    const int helpersKept;
    const std::size_t filesHeld;

    std::atomic<bool> isWaiting = false; // the logic waits; set under the mutex
    std::mutex mutex;                    // guards what follows
    std::condition_variable work;        // wakes helpers: a file may be fetched, or isOver
    std::condition_variable arrived;     // wakes the logic: a stage has changed
    std::deque<ComingFilePtr> files;     // in the order in which they will be opened
    std::size_t begun = 0;               // files at the front that a helper has begun
    std::size_t bytes = 0;               // of the files that are Ready
    std::vector<ComingFilePtr> spare;    // for their buffers
    std::vector<int> finished;           // handles that the next helper closes
    Slowness slowness;                   // of fetching
    bool mayLogicHelp = true;            // false when it cannot know what is in memory
    int helpers = 0;
    int idle = 0; // helpers that wait for work
    bool isOver = false;

private:
    enum class By { Helper, Logic }; // the thread that fetches; the logic does not wait for a disk

    template <class Condition>
    bool HelpUntil(const Condition &condition);
    bool HelpOfLogic();
    [[nodiscard]] bool HasWork() const;
    void Help();
    bool HelpOnce(std::unique_lock<std::mutex> &lock, By who);
    enum class Fetched { Whole, Partly, Same };
    bool IsSame(ComingFile &file);
    Fetched Fetch(ComingFile &file, By who);
    void Announce(ComingFile &file, FetchStage stage);
    [[nodiscard]] std::chrono::microseconds Patience() const;
    bool GoOnWaiting(std::chrono::steady_clock::duration waited);
};

// Whether the condition becomes true within the time of a read from memory, in which the logic does
// not sleep.
template <class Condition>
bool IsSoon(const Condition &condition)
{
    constexpr std::chrono::microseconds kRead{50};
    if (condition())
        return true;
    const auto start = std::chrono::steady_clock::now();
    while (!condition() && std::chrono::steady_clock::now() - start < kRead)
        continue;
    return condition();
}

// Fetches the files that follow, as long as they come from memory, until the condition is true.
// Returns: whether it is true.
template <class Condition>
bool Fetcher::HelpUntil(const Condition &condition)
{
    while (!condition())
        if (!HelpOfLogic())
            return condition();
    return true;
}

template <class Condition>
bool Fetcher::Wait(const Condition &condition)
{
    if (HelpUntil(condition) || IsSoon(condition))
        return true;
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex);
    isWaiting = true;
    work.notify_all();
    bool goesOn = true;
    while (goesOn && !arrived.wait_for(lock, Patience(), condition))
        goesOn = GoOnWaiting(std::chrono::steady_clock::now() - start);
    isWaiting = false;
    return goesOn;
}

template <class Condition>
bool Fetcher::WaitBriefly(const Condition &condition)
{
    constexpr std::chrono::milliseconds kOfProcessor{2};
    if (HelpUntil(condition) || IsSoon(condition))
        return true;
    std::unique_lock lock(mutex);
    if (slowness.IsSlow())
        return condition();
    isWaiting = true;
    const bool isTrue = arrived.wait_for(lock, kOfProcessor, condition);
    isWaiting = false;
    return isTrue;
}

} // namespace platform::posix
