// catalogue/comparedrows.h - a look-up of a song's rows that compares them instead of copying them.
//
// It is the stored query "SEL_ByPath" with further parameters. The first two are a whole path and
// kNoExclusion. After them follow either the texts that the song's rows should have (Title, Artist,
// Album, Year, Comment, Genre, Lyrics) or, as two integers, the fingerprint of these texts.
// The result has one record for each row, with the two fields below, each "1" or "0".
#pragma once

#include "catalogue/recordset.h"
#include "runtime/hash.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace catalogue
{

inline constexpr std::size_t kComparedColumns = 7; // Title to Lyrics
inline constexpr std::size_t kArtistOfCompared = 1;

// Whether the row is marked as a duplicate: "1" for any mark except 0, so also for a null.
inline constexpr int kIsDuplicateField = 0;
// Whether the row has these texts, byte by byte; null is not equal to the empty text. A duplicate
// has an artist of its own: it is not compared with a text, but it is a part of the fingerprint.
inline constexpr int kIsSameField = 1;

inline constexpr std::size_t kFingerprintValues = 2;

// The fingerprint of a row's texts, in the order of the columns. Rows with other texts have another
// one (runtime::Hash128Of).
using ComparedTexts = std::array<std::string_view, kComparedColumns>;
[[nodiscard]] runtime::Hash128 FingerprintOf(const ComparedTexts &texts);
// The same for the values of these columns, in this order.
// Errors: std::bad_variant_access when one of them is not a text.
[[nodiscard]] runtime::Hash128 FingerprintOf(const std::vector<Value> &values);
// The fingerprint as the two values of the look-up (ValuesOf), and back from these
// (FingerprintFrom).
[[nodiscard]] std::vector<Value> ValuesOf(const runtime::Hash128 &fingerprint);
[[nodiscard]] runtime::Hash128 FingerprintFrom(std::int64_t first, std::int64_t second);

} // namespace catalogue
