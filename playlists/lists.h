// playlists/lists.h - the play lists that the user has registered: names for M3U files, in the
// catalogue's table Lists. Adding, removing and showing one. The files themselves are only read.
#pragma once

#include "browser/mainform.h"

#include <string>
#include <string_view>

namespace playlists
{

// submnuAddPlayList_Click: asks for a file and a name, stores both, and adds the node to the tree.
// The name is asked for again when it is empty or in use, and also after Cancel; only closing the
// box by its frame or the end of the program ends the question. When the catalogue reports an
// error, a box shows it and no node is added.
void AddPlayList(browser::MainForm &form);

// Removes the list of that name from the catalogue and, if that succeeds, from the tree.
// Returns: whether it succeeded. A failure is shown in a box.
bool RemovePlayList(browser::MainForm &form, const std::string &name);

// The names of all lists, sorted.
std::vector<std::string> PlayListNames();

// Shows the entries of the list with that name in LV: one row for each with the keys "/0", "/1",
// ... When there is nothing to read, or the disk does not answer within a second, shows the box
// "The playlist is not ready" instead, and LV is not changed. Rows whose files do not exist are
// dimmed as soon as that is known; rows whose files are found under another path get that path.
// Returns: false when a later click has filled LV or opened a list meanwhile, and at the end of the
// program.
bool ListPlayList(browser::MainForm &form, std::string_view name);

// Shows in LV what EntrySearch has found since the last call. The event of tmrListFiles.
void ShowFoundEntries(browser::MainForm &form);

// Ends the search for files; for the end of the window and for tests.
void StopLooking();

} // namespace playlists
