// shell/preferences/newfolder.h - New folder, the command of the directory tree's popup menu.
#pragma once

#include "ui/cDirTree.h"
#include "ui/controls/inputs/keyedtree.h"

namespace shell
{

// Asks for a name and makes a folder of that name in the folder that is selected in `shown`, the
// tree of `dirTree`. The tree then shows the new folder.
// Errors: kFileExists when the name exists, else FileError, each with the path; nothing is made.
void NewFolder(ui::cDirTree &dirTree, ui::KeyedTree &shown);

} // namespace shell
