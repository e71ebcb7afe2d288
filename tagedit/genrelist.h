// tagedit/genrelist.h - the genres that the editor's boxes offer, and the search in them by letter.
// No state.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tagedit
{

// The 126 entries: an empty one, "255" (what the table has for the number 0), then the names of the
// numbers 1 to 124, all sorted by their bytes. "Dance Hall", the last name of the table, is not in
// the list.
[[nodiscard]] std::vector<std::string> GenreEntries();

// The index of the next entry after `index` (-1: start at the first one) that begins with `letter`
// (one character in UTF-8), letter case ignored. When there is none up to the end, the search
// starts again at entry 1. The entry "genre" never matches.
// Returns: -1 when nothing matches.
[[nodiscard]] int FindNextEntry(const std::vector<std::string> &entries, int index,
                                std::string_view letter);

} // namespace tagedit
