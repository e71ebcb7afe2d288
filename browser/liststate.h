// browser/liststate.h - the text in the list's area while the list has no rows: no folder yet,
// choose a group, reading, done. It is not a row of the list.
#pragma once

#include "browser/mainform.h"

#include <cstdint>

namespace browser
{

// Shows the state after the tree was loaded: the catalogue cannot be read; a regeneration has
// ended, or had been done before in this run of the program; the catalogue is empty (with a button
// for the preferences when no folder is stored); otherwise what to do next.
void ShowListState(MainForm &form);

// Shows that files are being read: file number `value` of `maximum`. `maximum` is 0 while they are
// being counted.
void ShowReading(MainForm &form, std::int64_t value, std::int64_t maximum);

// Enables tree and list and hides the progress bar, unless a regeneration or an export is running.
// Needed because a regeneration that does nothing leaves them as they are during a run.
void EndRegenerationDisplay(MainForm &form);

} // namespace browser
