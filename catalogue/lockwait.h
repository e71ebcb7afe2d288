// catalogue/lockwait.h - waiting for another program that has the catalogue locked. Meanwhile
// events run, so that windows stay usable; after a second the user is shown what the program waits
// for; a wait ends early when the program is to end.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace catalogue
{

// How long to wait. A test sets shorter times.
struct LockTimeouts {
    std::int64_t fullMs = 60000;  // a wait that takes longer fails and reports it
    std::int64_t laterMs = 1000;  // the limit for later waits once one has taken fullMs
    std::int64_t silentMs = 1000; // the user is shown what the program waits for after this time
};
LockTimeouts &TheLockTimeouts();

// Functions that a wait calls. app/ sets them; each may be missing.
struct LockWaitCalls {
    // Shows a line in the user's language; an empty text when the wait is over.
    std::function<void(std::string_view line)> ShowLine;
};
LockWaitCalls &TheLockWaitCalls();

// While one exists, a wait of full length that fails makes all later ones short, so that a job does
// not wait a minute for each of its files. Without one, the first statement that succeeds restores
// the full length.
class LockTimeoutOfRun
{
public:
    LockTimeoutOfRun();
    ~LockTimeoutOfRun();
    LockTimeoutOfRun(const LockTimeoutOfRun &) = delete;
    LockTimeoutOfRun &operator=(const LockTimeoutOfRun &) = delete;
};

// Whether a wait is going on: then a statement that is run comes from an event handler inside it.
bool IsWaitingForLock();

// Makes the current wait end, if there is one: the user has cancelled the job that waits.
void GiveUpLockWait();

// The longest time for the next wait.
std::int64_t LockTimeoutMs();

// One wait. There can only be one at a time: see IsWaitingForLock.
class LockWait
{
public:
    LockWait();
    ~LockWait();
    LockWait(const LockWait &) = delete;
    LockWait &operator=(const LockWait &) = delete;

    // Waits a little while events run. Returns: false when the wait is over, because its time is up
    // or the program is to end. Errors: those of the desktop's DoEvents.
    bool KeepWaiting();

    // To be called when the lock was obtained.
    void Succeeded();

    // The reason why the wait failed.
    [[nodiscard]] std::string FailureText() const { return m_failureText; }

private:
    std::int64_t m_sinceMs;
    std::int64_t m_timeoutMs;
    std::int64_t m_eventsMs; // when events last ran
    bool m_isShown = false;
    std::string m_failureText;
};

} // namespace catalogue
