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
    LockPatience patience;
    LockWaitCalls calls;
    int runs = 0;         // the number of PatienceOfRun objects
    bool isSpent = false; // a wait of full length has failed
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

LockPatience &TheLockPatience()
{
    return TheState().patience;
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

std::int64_t LockPatienceMs()
{
    const State &state = TheState();
    return state.isSpent ? state.patience.spentMs : state.patience.fullMs;
}

PatienceOfRun::PatienceOfRun()
{
    State &state = TheState();
    if (state.runs++ == 0)
        state.isSpent = false;
}

PatienceOfRun::~PatienceOfRun()
{
    State &state = TheState();
    if (--state.runs == 0)
        state.isSpent = false;
}

LockWait::LockWait() : m_sinceMs(MachineMs()), m_patienceMs(LockPatienceMs()), m_eventsMs(m_sinceMs)
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

bool LockWait::GoOn()
{
    State &state = TheState();
    const auto waitedMs = MachineMs() - m_sinceMs;
    if (state.isGivenUp || platform::IsEndRequested()) {
        m_words = "Another program holds the catalogue, and the wait for it was ended.";
    } else if (waitedMs >= m_patienceMs) {
        m_words = state.isSpent ? std::string("Another program still holds the catalogue.")
                                : "Another program has held the catalogue for " +
                                      std::to_string(state.patience.fullMs / 1000) + " seconds.";
        state.isSpent = true;
    }
    if (!m_words.empty())
        return false;
    if (!m_isShown && waitedMs >= state.patience.silentMs) {
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
        state.isSpent = false;
}

} // namespace catalogue
