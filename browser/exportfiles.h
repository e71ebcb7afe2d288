// browser/exportfiles.h - the export of the selected files to a folder.
#pragma once

#include "browser/mainform.h"

#include <functional>
#include <string>

namespace browser
{

// Asks for a folder, which starts at `start` (empty: nowhere in particular). The empty text when
// cancelled.
using FolderQuestion = std::function<std::string(const std::string &start)>;

// Copies the selected files of the search window's list, where that window is open, else of LV, to
// the folder that `selectDir` gives, over what has their names there. Each copy is whole or not
// there. Lists and commands rest meanwhile; Escape and the close of the window end it between two
// files. Where the room does not suffice a box says so and nothing is copied.
// Errors: of the first file that cannot be copied, with its path; those before it are copied.
void ExportFiles(MainForm &form, const FolderQuestion &selectDir);

// Ends a running export at the next file.
void StopExport(MainForm &form);

} // namespace browser
