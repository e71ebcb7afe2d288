// browser/filecommands.h - the commands on one file: add it to the catalogue, duplicate its entry,
// rename it. Each takes its target from the list and asks through the desktop. No state.
#pragma once

#include "browser/mainform.h"

#include <optional>
#include <string>
#include <string_view>

namespace browser
{

// Asks for an MP3 file with this title, starting in the music folder. Nothing when cancelled.
std::optional<std::string> ChooseMP3(std::string_view title, std::string_view kindOfFile);

// Add File: brings a chosen file into the catalogue. A new row rebuilds the tree; a file without
// tags is told so; what could not be added can be mailed to the author. Errors: none of its own.
void AddFile(MainForm &form);

// Duplicate entry: asks for the artists and adds a row for the selected file of `list` under them,
// marked as a duplicate. Nothing without a selected file.
// Errors: FileError with the path when the file cannot be read.
void DuplicateEntry(ui::KeyedList &list);

// Rename File: asks for a new name for the selected file of the main list and gives it to the file
// and to its rows. A name that holds a separator moves the file. Nothing without a selected file.
// Errors: FileError with the paths, kFileExists when something has that name already; the catalogue
//     is then as it was. When the rows could not be changed the file gets its old name back and a
//     box says why.
void RenameFile(MainForm &form);

// Registers these three and the export for the main form.
void InstallFileCommands();

} // namespace browser
