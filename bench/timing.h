// bench/timing.h - times of what is measured, in milliseconds of a steady clock.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace bench
{

class Stopwatch
{
public:
    [[nodiscard]] double Ms() const
    {
        using namespace std::chrono;
        return duration<double, std::milli>(steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

[[nodiscard]] inline double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The median time of so many rounds of `measure`. `prepare` runs before each round and is not
// measured.
template <class Measure, class Prepare>
[[nodiscard]] double MedianMs(int rounds, const Measure &measure, const Prepare &prepare)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        prepare();
        const Stopwatch watch;
        measure();
        times.push_back(watch.Ms());
    }
    return Median(std::move(times));
}
template <class Measure>
[[nodiscard]] double MedianMs(int rounds, const Measure &measure)
{
    return MedianMs(rounds, measure, [] {});
}

} // namespace bench
