// search/criteria.h - the statement that a search runs, built from what its pane holds. No state.
#pragma once

#include "catalogue/recordset.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace search
{

// The columns of MP3s that can be looked into, in the order of the pane's boxes; also the English
// captions of these.
inline constexpr std::array<std::string_view, 8> kFields = {"Title",   "Artist", "Album", "Year",
                                                            "Comment", "Genre",  "Path",  "Lyrics"};

// The entries of the list of types, by their index; any other index counts as the last.
enum SearchType : int { kAnyWords = 0, kAllWords = 1, kExactPhrase = 2 };

// What the pane holds.
struct Criteria {
    std::string text; // UTF-8
    int type = kAnyWords;
    std::array<bool, kFields.size()> ticked{};
};

// The search that the criteria make.
struct Search {
    std::string statement; // without "WHERE" when no field is ticked: there is nothing to run
    std::vector<catalogue::Value> params; // one for each "?"
    std::string text;                     // what the text box holds from now on
    bool HasField() const { return statement.find("WHERE") != std::string::npos; }
};

// Builds the search. The words of the text are what stands between its blanks; two blanks in a row
// give an empty word, which every value has. An empty text becomes "%", and a text without a blank
// gets one at its end, in the box too; a phrase is the text as it was before. Of a text with blanks
// a last word of one character is lost. "%" and "_" are wildcards.
[[nodiscard]] Search BuildSearch(const Criteria &criteria);

} // namespace search
