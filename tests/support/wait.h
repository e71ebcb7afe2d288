// tests/support/wait.h - waits for a condition, in tests without a window.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tests
{

// Checks `done` every two milliseconds. Returns: false when it was not true within `limit`, which
// is much more than a loaded machine needs: a test that fails here has found a defect.
[[nodiscard]] inline bool WaitUntil(const std::function<bool()> &done,
                                    std::chrono::milliseconds limit = std::chrono::seconds(60))
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace tests
