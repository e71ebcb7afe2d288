// playlists/lists.h - the registry of lists: names that the user gave to M3U files, in the
// catalogue's table Lists; adding and removing one, and showing what one holds. The files
// themselves are only read.
#pragma once

#include "browser/mainform.h"

#include <string>
#include <string_view>

namespace playlists
{

// submnuAddPlayList_Click: asks for a file and for a name, stores both, and adds the node to the
// tree. A name that is empty or taken is asked for again, and so it is after Cancel; closing the
// box by its frame and the end of the program leave the question. What the catalogue refuses is
// shown in a box and adds no node.
void AddPlayList(browser::MainForm &form);

// Removes the list of that name from the catalogue; from the tree too when the catalogue reports
// success.
// Returns: whether it did. A failure is shown in a box.
bool RemovePlayList(browser::MainForm &form, const std::string &name);

// The names of all lists in the order of their names.
std::vector<std::string> PlayListNames();

// Shows the entries of the list of that name in LV, one row each with the keys "/0", "/1", ...; the
// box "The playlist is not ready" instead when there is nothing to read, with LV as it was. Rows
// whose files are not there are dimmed as soon as the disk has said so, rows whose files are found
// under another spelling get that path.
// Returns: false when a newer click has taken LV over.
bool ListPlayList(browser::MainForm &form, std::string_view name);

// Takes what the disk said about the files of the entries in LV since the last call. Handler of
// tmrListFiles.
void ShowFoundEntries(browser::MainForm &form);

// Ends the look for files; for the window's end and for tests.
void StopLooking();

} // namespace playlists
