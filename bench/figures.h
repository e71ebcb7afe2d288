// bench/figures.h - the memory of the process, and figures printed beside their limits.
#pragma once

#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

namespace bench
{

// A size from /proc/self/status in MiB: "VmRSS" is the memory now, "VmHWM" its peak. 0 when it
// cannot be read.
[[nodiscard]] inline double MemoryMiB(std::string_view field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field))
            return std::stod(line.substr(field.size() + 1)) / 1024;
    return 0;
}

// Prints `value` beside its limit.
// Returns: whether the limit was missed: the value is greater, if `judged`; or it is negative,
// which means that it could not be measured.
[[nodiscard]] inline bool PrintFigure(const std::string &what, double value, const char *unit,
                                      double limit, bool judged)
{
    const bool missed = (judged && value > limit) || value < 0;
    std::printf("%-52s %8.1f %s, limit %.0f%s\n", what.c_str(), value, unit, limit,
                missed ? "  MISSED" : "");
    return missed;
}

} // namespace bench
