// catalogue/machineclock.h - the real time in which processes wait for one another, which no test
// replaces. No state.
#pragma once

#include <cstdint>

namespace catalogue
{

// Milliseconds of the machine's steady clock.
std::int64_t MachineMs();

// Lets real time pass while another process holds a lock.
void MachineSleepUs(int microseconds);

} // namespace catalogue
