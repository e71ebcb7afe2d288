// platform/helperthread.h - additional threads, for calls that wait for a disk.
#pragma once

#include <functional>

namespace platform
{

// Runs `work` on a new thread; nobody waits for its end. All signals are blocked on it: the main
// thread handles them. `work` must not throw, and must own everything that it uses.
// Returns: false when no thread can be started.
bool StartHelperThread(std::function<void()> work);

} // namespace platform
