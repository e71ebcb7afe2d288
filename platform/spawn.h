// platform/spawn.h - other programs, found on PATH unless their path is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform
{

// The path of the program `name`: itself when it holds a separator and can be run, otherwise the
// first match on PATH; empty when there is none.
std::string FindProgram(const std::string &name);

// Starts a program that continues after this one ends, in `workingFolder` if that exists, without
// input and without our open files. False when there is no such program.
bool StartDetached(const std::vector<std::string> &arguments, const std::string &workingFolder);

// Opens a path or an address with the desktop's opener (xdg-open), which gets it byte for byte as
// one argument, in `workingFolder` if that exists. A text longer than the longest possible argument
// is cut after a whole character. Waits at most half a second for a failure.
// Returns: false when there is no opener, or when it fails in that time.
bool OpenWithDesktop(std::string address, const std::string &workingFolder);

// Runs a program quietly to its end. False when there is no such program, when it failed, or when
// it took longer than `timeoutMs`; it continues to run then.
bool RunQuietly(const std::vector<std::string> &arguments, std::int64_t timeoutMs);

} // namespace platform
