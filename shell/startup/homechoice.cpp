#include "shell/startup/homechoice.h"

#include "runtime/paths.h"

#include <filesystem>
#include <system_error>

namespace shell
{

bool IsInstalled(const ProgramPlaces &places)
{
    std::error_code unknown;
    return places.ownChoice.empty() &&
           !std::filesystem::exists(runtime::JoinPath(places.programFolder, "portable"), unknown);
}

std::string ChooseProgramHome(const ProgramPlaces &places)
{
    if (!places.ownChoice.empty())
        return places.ownChoice;
    return IsInstalled(places) ? places.dataHome + runtime::PathSeparator + "quenlin"
                               : places.programFolder;
}

} // namespace shell
