// catalogue/machineclock.h - real time, for waits between processes. Tests do not replace it. No
// state.
#pragma once

#include <cstdint>

namespace catalogue
{

// Milliseconds of the machine's steady clock.
std::int64_t MachineMs();

// Waits for this long in real time, while another process has a lock.
void MachineSleepUs(int microseconds);

} // namespace catalogue
