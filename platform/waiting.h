// platform/waiting.h - waits during which the windows stay alive, and their end from outside.
#pragma once

#include <cstdint>
#include <functional>

namespace platform
{

enum class WaitEnd { Held, Limit, Cancelled };

// Lets events run until `condition` holds; asks it first, then about every 10 ms.
// Returns: how the wait ended: it held; `limitMs` passed; CancelWaits ran or a signal asked for the
// end meanwhile.
WaitEnd WaitUntil(const std::function<bool()> &condition, std::int64_t limitMs);

// Ends all waits that are under way, nested ones included; later ones are not touched.
void CancelWaits();

} // namespace platform
