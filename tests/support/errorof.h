// tests/support/errorof.h - the number of the error that a step ends with.
#pragma once

#include "runtime/error.h"

#include <functional>

namespace tests
{

// The number of the RuntimeError that `step` throws, 0 if it throws none.
inline int ErrorOf(const std::function<void()> &step)
{
    try {
        step();
    } catch (const runtime::RuntimeError &error) {
        return error.number;
    }
    return 0;
}

} // namespace tests
