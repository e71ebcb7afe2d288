// tagedit/editcommands.h - the commands that open the tag editor, and what they change in the main
// list afterwards.
#pragma once

#include "browser/mainform.h"
#include "metadata/records.h"

#include <string>

namespace tagedit
{

// Opens the editor for a file, modally. Errors: FileError with the path when the file cannot be
// read.
void EditFile(const std::string &path);

// Opens it for the selected file of a list; does nothing when another kind of row or no row is
// selected. Errors: as above.
void ShowFileInfo(const ui::KeyedList &list);

// Writes the new tags into the six sub-items of the row that is selected in the main list, if it is
// a file (any file): each gets the ID3v2 value, or the ID3v1 value when that is empty. The panel is
// updated too.
void ShowEdited(browser::MainForm &form, const metadata::ID3v1Tag &id3v1,
                const metadata::ID3v2Tag &id3v2);

// Registers the commands Tag Editor and File Info, the latter also for the popup menu.
void Install();

} // namespace tagedit
