#include "platform/waiting.h"

#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"

#include <utility>

namespace platform
{

namespace
{

constexpr std::int64_t kStepMs = 10;
constexpr std::int64_t kQuietMs = 100; // of a wait for a disk, in which no event runs

struct State {
    std::uint64_t cancels = 0; // calls of CancelWaits so far
} state;

} // namespace

WaitEnd WaitUntil(const std::function<bool()> &condition, std::int64_t limitMs)
{
    const std::uint64_t before = state.cancels;
    const std::int64_t start = TheMachine().clock->SteadyMs();
    while (!condition()) {
        if (TheMachine().clock->SteadyMs() - start >= limitMs)
            return WaitEnd::Limit;
        TheMachine().desktop->DoEvents();
        if (state.cancels != before || IsEndRequested())
            return WaitEnd::Cancelled;
        TheMachine().clock->Sleep(kStepMs);
    }
    return WaitEnd::ConditionMet;
}

void BeginWait()
{
    if (const auto &begin = TheMachine().beginWait)
        begin();
}

Folders::KeepWaiting WaitWithEvents(std::function<void()> slow, std::int64_t limitMs)
{
    return [slow = std::move(slow), limitMs, isSlow = false,
            since = TheMachine().clock->SteadyMs()]() mutable {
        const std::int64_t waited = TheMachine().clock->SteadyMs() - since;
        if (waited >= kQuietMs) {
            if (!std::exchange(isSlow, true))
                slow();
            TheMachine().desktop->DoEvents();
        }
        return waited < limitMs && !IsEndRequested();
    };
}

void CancelWaits()
{
    ++state.cancels;
}

} // namespace platform
