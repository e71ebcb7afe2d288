// browser/filecommands.h - the commands for one file: add it to the catalogue, duplicate its entry,
// rename it. Each uses the selected row of a list and asks the user through the desktop port. No
// state.
#pragma once

#include "browser/mainform.h"

#include <optional>
#include <string>
#include <string_view>

namespace browser
{

// Asks for an MP3 file in a file dialog with this title, which opens at the music folder.
// `kindOfFile`: what the dialog calls MP3 files.
// Returns: the path; nothing when cancelled.
std::optional<std::string> ChooseMP3(std::string_view title, std::string_view kindOfFile);

// Add File: adds a file that the user chooses to the catalogue. After a new row the tree is built
// again. A box reports a file without tags; a file that could not be added can be reported to the
// author by mail. Lets events run.
void AddFile(MainForm &form);

// Duplicate entry: asks for the artists and adds one more row for the selected file of `list` with
// them, marked as a duplicate. Does nothing when no file is selected.
// Errors: FileError with the path when the file cannot be read.
void DuplicateEntry(ui::KeyedList &list);

// Rename File: asks for a new name for the selected file of the main list, and changes the name of
// the file and the path in its rows. A name with a separator moves the file. Does nothing when no
// file is selected.
// Errors: FileError with the paths, kFileExists when the new name exists; the catalogue is
// unchanged then. When the rows could not be changed, the file gets its old name again and a box
// says why.
void RenameFile(MainForm &form);

// Registers these three commands and the export.
void InstallFileCommands();

} // namespace browser
