// app/windowlibrary.h - the library with the windows and their toolkit. It is loaded when windows
// are to be opened, so that a start in the terminal does not wait for the toolkit's libraries.
#pragma once

#include <string>
#include <vector>

namespace app
{

// What the program calls in the library: see app/windowrun.h and app/windowbatch.h.
struct WindowCalls {
    bool (*CanOpenWindows)(int argc, char **argv);
    int (*RunInWindows)(int argc, char **argv);
    int (*RunBatchInWindows)(int argc, char **argv, const std::vector<std::string> &paths);
};

// The name by which the library exports its calls.
inline constexpr const char *kWindowCalls = "quenlinWindowCalls";

// Loads the library, which is beside the program in a build folder and in lib/quenlin where the
// program is installed. It stays loaded.
// Returns: null where it cannot be loaded; the reason has then been written to stderr.
const WindowCalls *LoadWindows();

} // namespace app
