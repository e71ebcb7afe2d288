// platform/posix/spawn.h - other programs, found on PATH unless their path is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform::posix
{

// Where the program `name` lies: itself when it holds a separator and can be run, else the first
// match on PATH; empty when there is none.
std::string FindProgram(const std::string &name);

// Starts a program that lives on its own, in `workingFolder` where that exists, with no input and
// nothing of ours open. False when there is no such program.
bool StartDetached(const std::vector<std::string> &arguments, const std::string &workingFolder);

// Runs a program quietly to its end. False when there is no such program, when it failed, or when
// it took longer than `timeoutMs`; it is then left to itself.
bool RunQuietly(const std::vector<std::string> &arguments, std::int64_t timeoutMs);

} // namespace platform::posix
