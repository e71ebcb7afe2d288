#include "catalogue/lockwait.h"

#include "catalogue/machineclock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "shell/language.h"

namespace catalogue
{

namespace
{

// How often a waiting process tries again: quickly at first, because most waits are short, less
// often later.
constexpr int kFirstPollUs = 250;
constexpr int kLaterPollUs = 2000;
constexpr std::int64_t kFirstMs = 50;

constexpr std::int64_t kEventsMs = 20; // between two runs of events

struct State {
    LockTimeouts timeouts;
    LockWaitCalls calls;
    int runs = 0;             // the number of LockTimeoutOfRun objects
    bool hasTimedOut = false; // a wait of full length has failed
    bool isWaiting = false;
    bool isGivenUp = false;
};

State &TheState()
{
    static State state;
    return state;
}

void ShowLine(std::string_view line)
{
    if (const auto &show = TheState().calls.ShowLine)
        show(line);
}

void RunEvents()
{
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->DoEvents();
}

} // namespace

LockTimeouts &TheLockTimeouts()
{
    return TheState().timeouts;
}

LockWaitCalls &TheLockWaitCalls()
{
    return TheState().calls;
}

bool IsWaitingForLock()
{
    return TheState().isWaiting;
}

void GiveUpLockWait()
{
    TheState().isGivenUp = true;
}

std::int64_t LockTimeoutMs()
{
    const State &state = TheState();
    return state.hasTimedOut ? state.timeouts.laterMs : state.timeouts.fullMs;
}

LockTimeoutOfRun::LockTimeoutOfRun()
{
    State &state = TheState();
    if (state.runs++ == 0)
        state.hasTimedOut = false;
}

LockTimeoutOfRun::~LockTimeoutOfRun()
{
    State &state = TheState();
    if (--state.runs == 0)
        state.hasTimedOut = false;
}

LockWait::LockWait() : m_sinceMs(MachineMs()), m_timeoutMs(LockTimeoutMs()), m_eventsMs(m_sinceMs)
{
    TheState().isWaiting = true;
    TheState().isGivenUp = false;
}

LockWait::~LockWait()
{
    TheState().isWaiting = false;
    if (m_isShown)
        ShowLine({});
}

bool LockWait::KeepWaiting()
{
    State &state = TheState();
    const auto waitedMs = MachineMs() - m_sinceMs;
    if (state.isGivenUp || platform::IsEndRequested()) {
        m_failureText = "Another program holds the catalogue, and the wait for it was ended.";
    } else if (waitedMs >= m_timeoutMs) {
        m_failureText = state.hasTimedOut
                            ? std::string("Another program still holds the catalogue.")
                            : "Another program has held the catalogue for " +
                                  std::to_string(state.timeouts.fullMs / 1000) + " seconds.";
        state.hasTimedOut = true;
    }
    if (!m_failureText.empty())
        return false;
    if (!m_isShown && waitedMs >= state.timeouts.silentMs) {
        m_isShown = true;
        ShowLine(shell::GetLanguageText("Waiting for another program that uses the catalogue...",
                                        "WaitingForCatalogue", "Progress"));
    }
    if (const auto now = MachineMs(); now - m_eventsMs >= kEventsMs) {
        m_eventsMs = now;
        RunEvents();
    }
    MachineSleepUs(waitedMs < kFirstMs ? kFirstPollUs : kLaterPollUs);
    return true;
}

void LockWait::Succeeded()
{
    State &state = TheState();
    if (state.runs == 0)
        state.hasTimedOut = false;
}

} // namespace catalogue
