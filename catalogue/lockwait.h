// catalogue/lockwait.h - the wait for another program that has the catalogue. While it lasts,
// events run, so that windows stay alive; after a second the user is shown what is waited for; the
// end of the program is not held up.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace catalogue
{

// How long is waited. A test shortens it.
struct LockPatience {
    std::int64_t fullMs = 60000;  // a wait that lasts longer fails, and says so
    std::int64_t spentMs = 1000;  // each further wait, once one has lasted for fullMs
    std::int64_t silentMs = 1000; // what is waited for is shown after this time
};
LockPatience &TheLockPatience();

// What a wait calls. app/ fills it in; it may be absent, and outlives the program's work.
struct LockWaitCalls {
    // Shows the line, in the user's language; the empty text when the wait is over.
    std::function<void(std::string_view line)> ShowLine;
};
LockWaitCalls &TheLockWaitCalls();

// While one lives, a full wait that failed makes all later ones short: a job does not wait a minute
// for each of its files. Outside, the patience comes back with the first statement that gets
// through.
class PatienceOfRun
{
public:
    PatienceOfRun();
    ~PatienceOfRun();
    PatienceOfRun(const PatienceOfRun &) = delete;
    PatienceOfRun &operator=(const PatienceOfRun &) = delete;
};

// Whether a wait is under way: a statement is then one of an event handler inside it.
bool IsWaitingForLock();

// Has the wait under way, if any, end: the user wants no more of the job that waits.
void GiveUpLockWait();

// How long the next wait may last.
std::int64_t LockPatienceMs();

// One wait. Only one at a time: see IsWaitingForLock.
class LockWait
{
public:
    LockWait();
    ~LockWait();
    LockWait(const LockWait &) = delete;
    LockWait &operator=(const LockWait &) = delete;

    // Lets a little time pass, and events run. False when the wait is over: its time is up, or the
    // program is to end. Errors: those of the desktop's DoEvents.
    bool GoOn();

    // To be called when the catalogue was got.
    void Succeeded();

    // Why the wait was given up.
    [[nodiscard]] std::string Words() const { return m_words; }

private:
    std::int64_t m_sinceMs;
    std::int64_t m_patienceMs;
    std::int64_t m_eventsMs; // when events last ran
    bool m_isShown = false;
    std::string m_words;
};

} // namespace catalogue
