#include "catalogue/machineclock.h"

#include <chrono>
#include <thread>

namespace catalogue
{

std::int64_t MachineMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void MachineSleepUs(int microseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

} // namespace catalogue
