// fuzz/expect.h - how a target reports what it has found.
#pragma once

#include <cstdlib>

namespace fuzz
{

// Ends the process when the condition is false, so that the fuzzer keeps the input.
inline void Expect(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

} // namespace fuzz
