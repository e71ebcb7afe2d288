// platform/session.h - what the user's session gives to this process: a terminal, a display, a
// private folder.
#pragma once

#include <string>

namespace platform
{

enum class Stream { Input, Output, Errors };

// Whether the standard stream is a terminal, where a user may type or read.
bool IsTerminal(Stream stream);

// Reads one byte of the standard input, when there is one. Returns: 1; 0 at the end of the input;
// the negated errno when that failed: -EINTR when a signal has ended the wait.
int ReadInputByte(char &byte);

// Whether there is a window system.
bool HasDisplay();

// The name of the display as users know it, for messages; empty when it has none.
std::string DisplayName();

// A folder for files that live no longer than the session: only this user can read it. Without a
// separator at its end; empty when there is none.
std::string SessionFolder();

} // namespace platform
