// shell/startup/homechoice.h - decides which folder is the program's own, before Main runs. Paths
// are bytes, without a trailing separator.
#pragma once

#include <string>

namespace shell
{

// What the decision depends on.
struct ProgramPlaces {
    std::string programFolder; // the folder with the program file
    std::string ownChoice;     // the environment variable QUENLIN_HOME; empty when not set
    std::string dataHome;      // the user's folder for data
};

// The program's folder: `ownChoice` when set; else `programFolder` when it has a file named
// "portable"; else "quenlin" in `dataHome`.
std::string ChooseProgramHome(const ProgramPlaces &places);

// Whether the program was installed for all users, so that its own folder is the one in `dataHome`.
bool IsInstalled(const ProgramPlaces &places);

} // namespace shell
