// platform/posix/spawn.h - other programs, found on PATH unless their path is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform::posix
{

// The path of the program `name`: itself when it holds a separator and can be run, otherwise the
// first match on PATH; empty when there is none.
std::string FindProgram(const std::string &name);

// Starts a program that goes on after this one ends, in `workingFolder` where that exists, with no
// input and none of our files open. False when there is no such program.
bool StartDetached(const std::vector<std::string> &arguments, const std::string &workingFolder);

// Has the desktop's opener (xdg-open) open a path or an address, handed over byte for byte as one
// argument, in `workingFolder` where that exists. What exceeds the longest argument that a program
// can be given is cut at a character. Waits half a second for a refusal, no longer.
// False when there is no opener, or when it says in that time that it opened nothing.
bool OpenWithDesktop(std::string address, const std::string &workingFolder);

// Runs a program quietly to its end. False when there is no such program, when it failed, or when
// it took longer than `timeoutMs`; it goes on running then.
bool RunQuietly(const std::vector<std::string> &arguments, std::int64_t timeoutMs);

} // namespace platform::posix
