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

// Copies the shipped files (the files of `shippedFolder`) into `home` on the very first start, and
// marks that as done with a file named ".filled". A file that is there stays as it is, and after
// that nothing is copied again: a file that is missing then is missing. Each copy appears whole,
// and is on the disk before the marker is: a power cut leaves what the next start completes.
// Processes that start side by side do not disturb one another. Errors: FileError
// (runtime/error.h); what was copied so far stays, and the next start copies the rest.
void FillOnFirstStart(const std::string &shippedFolder, const std::string &home);

// Copies a shipped file again whose copy in `home` is empty or a true beginning of it, as an
// interrupted writing leaves one. The catalogue is never replaced, nor a file that the user
// changed, and a file that is missing stays missing. Errors: none; a file that cannot be written
// stays.
void RestoreTornFiles(const std::string &shippedFolder, const std::string &home);

} // namespace shell
