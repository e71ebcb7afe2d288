// platform/process.h - the process of the program: what it prepares before all else, code that it
// loads later, and a trial that may end it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace platform
{

// Prepares the process; to be called first. Afterwards the three standard streams are open, so that
// no file gets the number of one of them and then the messages meant for it; a write to a pipe that
// nobody reads, or beyond the allowed size of a file, fails instead of ending the process in the
// middle of a job; and memory is allocated in the way that suits a regeneration.
void PrepareProcess();

// Runs `trial` in a copy of this process, without messages and without a core file, and waits for
// its end. To be called before any file is open. Returns: whether the trial returned; false when it
// ended its process. Where a process cannot be copied, `trial` does not run and true is returned.
bool ReturnsInCopy(const std::function<void()> &trial);

// The name of the file with the code library `name`, as this operating system forms it ("name.so").
std::string LibraryFileName(std::string_view name);

// Loads a library of code, which stays loaded. Returns: null when that failed, with the reason in
// `why`.
void *OpenLibrary(const std::string &path, std::string &why);

// The address of what the library exports as `name`. Returns: null when it does not, with the
// reason in `why`.
void *FindInLibrary(void *library, const char *name, std::string &why);

} // namespace platform
