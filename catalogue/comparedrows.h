// catalogue/comparedrows.h - a look-up of a song's rows that compares them instead of copying them.
//
// The stored query "SEL_ByPath" with a whole path, nothing excluded, and after these two parameters
// the texts that the song's rows should have: Title, Artist, Album, Year, Comment, Genre, Lyrics.
// Its result has one record for each row, with the two fields below, each "1" or "0".
#pragma once

#include <cstddef>

namespace catalogue
{

inline constexpr std::size_t kComparedColumns = 7; // Title to Lyrics
inline constexpr std::size_t kArtistOfCompared = 1;

inline constexpr int kIsDuplicateField = 0; // whether the row is marked as a duplicate, or may be
// Whether the row has these texts, byte by byte; null is not equal to the empty text. A duplicate
// has an artist of its own, which is not compared.
inline constexpr int kIsSameField = 1;

} // namespace catalogue
