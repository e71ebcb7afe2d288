// shell/startup/programhome.h - which folder is the program's own, decided before Main runs. Paths
// are bytes, without a trailing separator.
#pragma once

#include <string>

namespace shell
{

// What the decision depends on.
struct ProgramPlaces {
    std::string programFolder; // that of the running program
    std::string ownChoice;     // the environment's QUENLIN_HOME; empty when it says nothing
    std::string dataHome;      // the user's folder for data
};

// The program's folder: the user's own choice; else the folder of the program when that holds a
// file named "portable"; else "quenlin" under the folder for data.
std::string ChooseProgramHome(const ProgramPlaces &places);

// Whether the program was installed for all users, so that its folder is the one under dataHome.
bool IsInstalled(const ProgramPlaces &places);

} // namespace shell
