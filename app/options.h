// app/options.h - what the command line asks for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace app
{

enum class Job {
    Window,     // no argument: the main window
    Batch,      // paths: catalogue them
    Regenerate, // --regenerate FOLDER
    Help,       // --help
    Version,    // --version
    Mistake,    // a command line that cannot be
};

struct Options {
    Job job = Job::Window;
    std::vector<std::string> paths; // as given; for Regenerate the folder alone
    std::string mistake;            // for Mistake: what is wrong, one line
};

// Sorts the arguments after the program's name. A word that begins with "--" is an option; "--"
// alone ends the options, and all that follows are paths. Of --help and --version the first counts.
Options ParseOptions(const std::vector<std::string> &arguments);

// How to use the program: lines that end in LF.
std::string_view UsageText();

// "Quenlin 1.6.9" and LF.
std::string VersionText();

} // namespace app
