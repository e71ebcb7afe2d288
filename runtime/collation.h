// runtime/collation.h - the order of texts, the same for statements and for lists: letter case is
// ignored, an accented letter sorts beside its plain one, digits are compared as characters. Texts
// are UTF-8 of any length; NULs and invalid bytes are allowed. No state.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// The key by which `text` sorts, to be compared byte by byte: its letters in upper case, without
// their marks. A byte that is not part of valid UTF-8 is kept. CollateKeyed orders texts with equal
// keys.
// Source: the canonical decomposition of Unicode, from utf8proc. Marks are the characters of the
// general categories Mn and Me; a spacing mark (Mc), such as an Indic vowel sign, counts as a
// letter.
std::string SortKey(std::string_view text);

// The same, written to `key`, whose memory is used again.
void MakeSortKey(std::string_view text, std::string &key);

// The order of two texts: by SortKey, then by the upper-cased texts ("Eric" comes before "Éric").
// Returns: below 0 when `first` comes first, above 0 when `second` does, 0 when they differ in
// letter case only or not at all.
int CollateText(std::string_view first, std::string_view second);

// The same when the sort keys are known already: for sorting, which compares each text many times.
int CollateKeyed(std::string_view firstKey, std::string_view first, std::string_view secondKey,
                 std::string_view second);

} // namespace runtime
