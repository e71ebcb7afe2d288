// tests/support/faultycalls.h - makes one system call of the catalogue's engine fail.
#pragma once

#include <functional>

namespace tests
{

// While one exists, the call number `failing` with which SQLite reads, writes, truncates or maps a
// file fails: with "no room" when it writes, else with "input/output error"; none for 0. With
// `onwards` all later calls that write fail too, as on a disk that stays full. Only one at a time.
class FaultyCalls
{
public:
    FaultyCalls(int failing, bool onwards);
    ~FaultyCalls();
    FaultyCalls(const FaultyCalls &) = delete;
    FaultyCalls &operator=(const FaultyCalls &) = delete;

    // Whether there were that many calls.
    [[nodiscard]] bool HasFailed() const;

    // The number of such calls so far.
    [[nodiscard]] int Calls() const;
};

} // namespace tests
