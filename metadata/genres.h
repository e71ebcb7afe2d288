// metadata/genres.h - the table of genre names, and conversions between name and number. Genres are
// file bytes; every name of the table is ASCII, so it is UTF-8 as well. No state.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace metadata
{

// The names in use, by number 0 to 125. Catalogues and tags have contained them since the first
// version, odd spellings included: do not correct them.
extern const std::array<std::string_view, 126> kGenreNames;

// A second list of 148 names with other spellings, which nothing uses: a blank entry, then the
// names, joined with "|".
extern const std::string_view kOtherGenreNames;

// The genre text of `value`: the name for a whole number 1 to 125, "255" for "0", "Blues" for any
// other text of the number 0 ("00", " 0"), the empty text for any other number ("126", "-1",
// "1.5"). A text that is no number at all is its own name (a custom genre).
[[nodiscard]] std::string GenreName(std::string_view value);

// The same for a number; 0 gives "255".
[[nodiscard]] std::string GenreName(double value);

// The number 0 to 125 whose GenreName is `name` without regard to letter case; "255" gives 0.
// 255 when there is none: for "Blues", for a custom genre, for the empty text.
[[nodiscard]] std::int16_t GenreNumber(std::string_view name);

} // namespace metadata
