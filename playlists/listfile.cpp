#include "playlists/listfile.h"

#include "platform/helperthread.h"
#include "platform/waiting.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <utility>

namespace playlists
{

namespace
{

constexpr std::int64_t kAnswerLimitMs = 1000;         // for a disk
constexpr auto kStep = std::chrono::milliseconds(20); // most lists are read in less: no event runs

// What the helper thread and the caller share.
struct Question {
    std::mutex lock;
    std::condition_variable changed;
    bool isAnswered = false;
    std::string text;
};

// The paths that a helper thread is reading.
struct BeingRead {
    std::mutex lock;
    std::set<std::string> paths;

    [[nodiscard]] bool Add(const std::string &path)
    {
        const std::lock_guard guard(lock);
        return paths.insert(path).second;
    }
    void Remove(const std::string &path)
    {
        const std::lock_guard guard(lock);
        paths.erase(path);
    }
};

std::shared_ptr<BeingRead> TheBeingRead()
{
    // Shared with the helper threads, which may outlive everything else at the end of the process.
    static const auto beingRead = std::make_shared<BeingRead>();
    return beingRead;
}

std::string Read(const ListReader &read, const std::string &path)
{
    try {
        return read(path);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

} // namespace

std::string ReadListFile(const std::string &path, const ListReader &read)
{
    const auto beingRead = TheBeingRead();
    if (!beingRead->Add(path))
        return {};
    const auto question = std::make_shared<Question>();
    const bool hasHelper = platform::StartHelperThread([question, beingRead, path, read] {
        std::string text = Read(read, path);
        beingRead->Remove(path);
        const std::lock_guard guard(question->lock);
        question->text = std::move(text);
        question->isAnswered = true;
        question->changed.notify_all();
    });
    if (!hasHelper) {
        beingRead->Remove(path);
        return {};
    }
    const auto isAnswered = [&question] {
        std::unique_lock guard(question->lock);
        return question->changed.wait_for(guard, kStep, [&] { return question->isAnswered; });
    };
    if (platform::WaitUntil(isAnswered, kAnswerLimitMs) != platform::WaitEnd::ConditionMet)
        return {};
    const std::lock_guard guard(question->lock);
    return std::move(question->text);
}

} // namespace playlists
