// app/options.h - the options of the command line.
#pragma once

#include <optional>
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
    Setting,    // --unicode-tags alone: store it
    Mistake,    // the command line is wrong
};

struct Options {
    Job job = Job::Window;
    std::vector<std::string> paths;  // as given; for Regenerate the folder alone
    std::optional<bool> unicodeTags; // --unicode-tags on|off: stored before the job
    std::string mistake;             // for Mistake: what is wrong, one line
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
