// search/criteria.h - builds the statement of a search from the criteria in the window. No state.
#pragma once

#include "catalogue/recordset.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace search
{

// The columns of MP3s that can be searched, in the order of the check boxes; also the English
// captions of these.
inline constexpr std::array<std::string_view, 8> kFields = {"Title",   "Artist", "Album", "Year",
                                                            "Comment", "Genre",  "Path",  "Lyrics"};

// The entries of the list of types; another index counts as the last one.
enum SearchType : int { kAnyWords = 0, kAllWords = 1, kExactPhrase = 2 };

// The criteria in the window.
struct Criteria {
    std::string text; // UTF-8
    int type = kAnyWords;
    std::array<bool, kFields.size()> ticked{};
};

// The search for some criteria.
struct Search {
    std::string statement; // without "WHERE" when no field is checked: it must not be run
    std::vector<catalogue::Value> params; // one for each "?"
    std::string text;                     // the new text of the text box
    bool HasField() const { return statement.find("WHERE") != std::string::npos; }
};

// Builds the search. Words are separated by blanks; two blanks in a row give an empty word, which
// is found in every value. An empty text becomes "%", and a text without a blank gets one at its
// end, also in the text box; but a phrase is the text as it was before. When the text contains a
// blank, a last word of one character is ignored. "%" and "_" are wildcards.
[[nodiscard]] Search BuildSearch(const Criteria &criteria);

} // namespace search
