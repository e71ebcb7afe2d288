// tagedit/genrelist.h - the genres that the editor's boxes offer, and the search in them by letter.
// No state.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tagedit
{

// The 126 entries: the empty one, "255" (the text of the number 0), then the names of the numbers 1
// to 124 in binary order. "Dance Hall", the last name of the table, is not offered.
[[nodiscard]] std::vector<std::string> GenreEntries();

// The next entry behind `index` (-1 = before the first) that begins with `letter` without regard to
// letter case; when the end has none, the first one from entry 1 on. An entry "genre" is passed
// over. -1 when there is none.
[[nodiscard]] int FindNextEntry(const std::vector<std::string> &entries, int index,
                                std::string_view letter);

} // namespace tagedit
