// platform/posix/helperthread.h - threads beside that of the logic, for calls that wait for a disk.
#pragma once

#include <functional>

namespace platform::posix
{

// Runs `work` on a thread of its own, which nobody waits for. Every signal is blocked there: they
// are the main thread's. `work` throws nothing, and owns all that it uses.
// Returns: false where no thread is to be had.
bool StartHelperThread(std::function<void()> work);

} // namespace platform::posix
