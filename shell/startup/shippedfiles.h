// shell/startup/shippedfiles.h - the files that an installation brings along, and the user's copies
// of them in the program's own folder. Paths are bytes, without a trailing separator.
#pragma once

#include <string>

namespace shell
{

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

// Brings the user's copies up to the installation, after an upgrade: a copy that is as it was once
// given is replaced by the new file, and a file that the installation did not have before is added.
// A copy that the user changed stays, a symbolic link stays, a file that the user deleted stays
// away, and the catalogue is never touched. What was given is kept in the file ".shipped" of
// `home`; without it (the first start of a version that has it) only copies equal to the shipped
// files are taken as given, and missing ones are added. Costs one look at each shipped file when
// nothing changed. Errors: none; a file that cannot be written is tried again at the next start.
void RenewShippedFiles(const std::string &shippedFolder, const std::string &home);

} // namespace shell
