// platform/waiting.h - waits during which events run, so that windows stay usable, and their end
// from outside.
#pragma once

#include <cstdint>
#include <functional>

namespace platform
{

enum class WaitEnd { Held, Limit, Cancelled };

// Lets events run until `condition` holds; asks it first, then about every 10 ms.
// Returns: how the wait ended: the condition became true; `limitMs` passed; CancelWaits was called
// or a signal asked for the end.
WaitEnd WaitUntil(const std::function<bool()> &condition, std::int64_t limitMs);

// Ends all current waits, nested ones included; later waits are not affected.
void CancelWaits();

} // namespace platform
