// catalogue/regeneration/emptysongs.h - the table of songs, emptied before a regeneration. No
// state.
#pragma once

#include <string>

namespace catalogue
{

// Empties the table, after making a copy of the whole catalogue where it has rows. If the copy
// fails, nothing is deleted.
// Returns: why it failed; empty when the table is empty.
[[nodiscard]] std::string EmptySongs();

} // namespace catalogue
