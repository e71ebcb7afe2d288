#include "app/options.h"

#include "runtime/text.h"
#include "shell/version.h"

namespace app
{

namespace
{

Options Mistake(const std::string &words)
{
    return {Job::Mistake, {}, {}, words};
}

} // namespace

Options ParseOptions(const std::vector<std::string> &arguments)
{
    Options options;
    bool onlyPaths = false;
    bool regenerate = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string &argument = arguments[i];
        if (onlyPaths || !argument.starts_with("--")) {
            options.paths.push_back(argument);
        } else if (argument == "--") {
            onlyPaths = true;
        } else if (argument == "--help" || argument == "--version") {
            return {argument == "--help" ? Job::Help : Job::Version, {}, {}, {}};
        } else if (argument == "--regenerate") {
            regenerate = true;
        } else if (argument == "--unicode-tags") {
            const std::string value = i + 1 < arguments.size() ? arguments[++i] : std::string();
            if (value != "on" && value != "off")
                return Mistake("--unicode-tags takes \"on\" or \"off\".");
            options.unicodeTags = value == "on";
        } else {
            return Mistake("There is no option " + runtime::ShownText(argument) + ".");
        }
    }
    if (regenerate && (options.paths.size() != 1 || options.paths[0].empty()))
        return Mistake("--regenerate takes one folder.");
    if (regenerate)
        options.job = Job::Regenerate;
    else if (!options.paths.empty())
        options.job = Job::Batch;
    else if (options.unicodeTags)
        options.job = Job::Setting;
    return options;
}

std::string_view UsageText()
{
    return "Usage: quenlin [FILE...]            catalogue MP3 files; a .txt file becomes the "
           "lyrics\n"
           "                                    of the catalogued MP3 of the same name\n"
           "       quenlin --regenerate FOLDER  catalogue every MP3 file under a folder;\n"
           "                                    the window keeps its own (Tools, Preferences)\n"
           "       quenlin --unicode-tags on|off\n"
           "                                    read and write tags by their encodings: Unicode, "
           "and\n"
           "                                    all versions of ID3v2. It is kept, also for the\n"
           "                                    window, and may come with the others\n"
           "       quenlin --help | --version\n"
           "\n"
           "  --   ends the options; what follows are files\n"
           "\n"
           "Files are summed up in Solution.txt in the program's folder, a folder in the "
           "integrity\n"
           "report there. QUENLIN_HOME names another folder with a catalogue of its own.\n"
           "Exit status: 0 done, 1 refused or failed, 2 wrong usage, 3 songs whose rows were "
           "lost.\n";
}

std::string VersionText()
{
    const shell::Version &version = shell::kProgramVersion;
    return "Quenlin " + std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.patch) + "\n";
}

} // namespace app
