// platform/waiting.h - waits during which events run, so that windows stay usable, and their end
// from outside.
#pragma once

#include "platform/disk/folders.h"

#include <cstdint>
#include <functional>

namespace platform
{

enum class WaitEnd { ConditionMet, Limit, Cancelled };

// Lets events run until `condition` returns true; checks it first, then about every 10 ms.
// Returns: how the wait ended: ConditionMet: the condition is true; Limit: `limitMs` have passed;
// Cancelled: CancelWaits was called, or a signal asked for the end.
WaitEnd WaitUntil(const std::function<bool()> &condition, std::int64_t limitMs);

// What must be done before the program waits for the user. Each box, dialog and modal window begins
// with it, and each address that the desktop is to open.
void BeginWait();

// How long a window waits for a disk that does not answer.
inline constexpr std::int64_t kDiskLimitMs = 2000;

// For a question to a disk (platform/disk/folders.h) from a window that must stay usable. No event
// runs for the first 100 ms, in which a disk that is running answers; then `slow` is called once,
// and events run each time that the result is called. It ends the wait after `limitMs`, or when a
// signal asked for the end.
[[nodiscard]] Folders::KeepWaiting WaitWithEvents(std::function<void()> slow,
                                                  std::int64_t limitMs = kDiskLimitMs);

// Ends all current waits, nested ones included; later waits are not affected.
void CancelWaits();

} // namespace platform
