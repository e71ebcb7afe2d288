// browser/exportfiles.h - the export of the selected files to a folder.
#pragma once

#include "browser/mainform.h"

#include <functional>
#include <string>

namespace browser
{

// Asks for a folder, beginning at the folder `start` (a path; empty: where the window begins by
// itself). Returns: its path; the empty text when cancelled.
using FolderQuestion = std::function<std::string(const std::string &start)>;

// The list for the command: that of the search window while it is open, else LV.
ui::KeyedList &ExportList(MainForm &form);

// Copies the selected files of `list` to the folder that `selectDir` returns; existing files of the
// same names are replaced. A copy is complete or does not appear. Lists and commands are disabled
// meanwhile; Escape or closing the main window stops it between two files. When there is not enough
// room, a box reports this and nothing is copied.
// Errors: the first file that cannot be copied, with its path; those before it are copied.
void ExportFiles(MainForm &form, ui::KeyedList &list, const FolderQuestion &selectDir);

} // namespace browser
