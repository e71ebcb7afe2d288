// app/options.h - the options of the command line.
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
    Mistake,    // an invalid command line
};

struct Options {
    Job job = Job::Window;
    std::vector<std::string> paths; // unchanged; for Regenerate only the folder
    std::string mistake;            // for Mistake: the reason, one line
};

// Parses the arguments after the program's name. A word that begins with "--" is an option; "--"
// alone ends the options, and all words after it are paths. When --help and --version are both
// given, the first one counts.
Options ParseOptions(const std::vector<std::string> &arguments);

// The help text for the terminal; its lines end in LF.
std::string_view UsageText();

// "Quenlin 1.6.9" and an LF.
std::string VersionText();

} // namespace app
