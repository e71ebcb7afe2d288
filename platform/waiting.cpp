#include "platform/waiting.h"

#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"

namespace platform
{

namespace
{

constexpr std::int64_t kStepMs = 10;

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
    return WaitEnd::Held;
}

void CancelWaits()
{
    ++state.cancels;
}

} // namespace platform
