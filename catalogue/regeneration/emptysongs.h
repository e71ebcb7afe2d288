// catalogue/regeneration/emptysongs.h - empties the table of songs before a regeneration. No state.
#pragma once

#include <string>

namespace catalogue
{

// Empties the table; when it has rows, a copy of the whole catalogue is made first. If the copy
// fails, nothing is deleted.
// Returns: why it failed; empty when the table is empty.
[[nodiscard]] std::string EmptySongs();

} // namespace catalogue
