// tests/support/faultycalls.h - the system calls of the catalogue's engine, of which one fails.
#pragma once

#include <functional>

namespace tests
{

// While one lives, the `failing`-th call by which SQLite reads, writes, cuts or maps a file fails,
// with "no room" where it writes and "input/output error" elsewhere; with `onwards` each later call
// that writes does as well, as on a disk that stays full. One at a time.
class FaultyCalls
{
public:
    FaultyCalls(int failing, bool onwards);
    ~FaultyCalls();
    FaultyCalls(const FaultyCalls &) = delete;
    FaultyCalls &operator=(const FaultyCalls &) = delete;

    // Whether as many calls came.
    [[nodiscard]] bool HasFailed() const;
};

} // namespace tests
