// shell/startup/shippedfiles.h - the files that are part of an installation, and the user's copies
// of them in the program's own folder. Paths are bytes, without a trailing separator.
#pragma once

#include <string>

namespace shell
{

// Copies the shipped files (the files of `shippedFolder`) into `home` on the very first start, and
// marks that as done with a file named ".filled". An existing file is not changed, and afterwards
// nothing is copied again: a file that is missing later stays missing. Each copy appears whole, and
// is on the disk before the marker is: after a power cut the next start completes the work.
// Processes that start at the same time do not disturb one another. Errors: FileError
// (runtime/error.h); the files copied so far stay, and the next start copies the rest.
void FillOnFirstStart(const std::string &shippedFolder, const std::string &home);

// Copies a shipped file again when its copy in `home` is empty or only the first part of it, as an
// interrupted writing leaves it. The catalogue is never replaced, nor a file that the user changed,
// and a file that is missing stays missing. Errors: none; a file that cannot be written is not
// changed.
void RestoreTornFiles(const std::string &shippedFolder, const std::string &home);

// Updates the user's copies after an upgrade: a copy that the user has not changed is replaced by
// the new file, and a file that the installation did not have before is added. A changed copy and a
// symbolic link stay, a deleted file is not added again, and the catalogue is never changed. The
// file ".shipped" in `home` has a record of the files that were copied; without it (the first start
// of a version with this record) only copies equal to the shipped files count as unchanged, and
// missing ones are added. When nothing has changed, only the state of each shipped file is read.
// Errors: none; a file that cannot be written is tried again at the next start.
void RenewShippedFiles(const std::string &shippedFolder, const std::string &home);

} // namespace shell
