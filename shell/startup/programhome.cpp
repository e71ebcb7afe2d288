#include "shell/startup/programhome.h"

#include "runtime/paths.h"

#include <unistd.h>

namespace shell
{

bool IsInstalled(const ProgramPlaces &places)
{
    return places.ownChoice.empty() &&
           access((places.programFolder + runtime::PathSeparator + "portable").c_str(), F_OK) != 0;
}

std::string ChooseProgramHome(const ProgramPlaces &places)
{
    if (!places.ownChoice.empty())
        return places.ownChoice;
    return IsInstalled(places) ? places.dataHome + runtime::PathSeparator + "quenlin"
                               : places.programFolder;
}

} // namespace shell
