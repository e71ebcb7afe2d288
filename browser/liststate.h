// browser/liststate.h - what the list's area says while the list has no rows: no folder yet, choose
// a group, reading, done. Never a row of the list.
#pragma once

#include "browser/mainform.h"

#include <cstdint>

namespace browser
{

// Says how things are after the tree was loaded: that the catalogue cannot be read, that a
// regeneration has ended or had been done already in this run of the program, that the catalogue is
// empty (with a button to the preferences where no folder is stored), else how to go on.
void ShowListState(MainForm &form);

// Says that files are being read, `value` of `maximum`; 0 as long as they are counted.
void ShowReading(MainForm &form, std::int64_t value, std::int64_t maximum);

// Makes tree and list answer again and takes the progress bar away, unless a regeneration or an
// export is under way: a regeneration that does nothing leaves them as they are during a run.
void EndRegenerationDisplay(MainForm &form);

} // namespace browser
