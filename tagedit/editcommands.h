// tagedit/editcommands.h - the commands that open the tag editor, and the row of the main list
// after an edit.
#pragma once

#include "browser/mainform.h"
#include "metadata/records.h"

#include <string>

namespace tagedit
{

// Opens the editor on a file, modally. Errors: FileError with the path when it cannot be read.
void EditFile(const std::string &path);

// Opens it on the selected file of a list; nothing on any other row, or on none. Errors: as above.
void ShowFileInfo(const ui::KeyedList &list);

// Sets the six sub-items of the main list's selected file row, whichever file was edited: each to
// the new ID3v2 value, or to the new ID3v1 value where that is empty. The panel follows.
void ShowEdited(browser::MainForm &form, const metadata::ID3v1Tag &id3v1,
                const metadata::ID3v2Tag &id3v2);

// Registers Tag Editor, File Info and the popup's File Info.
void Install();

} // namespace tagedit
