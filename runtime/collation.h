// runtime/collation.h - the one order of texts, for statements and for lists: without regard to
// letter case, accented letters beside their plain ones, digits as the characters they are. UTF-8
// of any length, NULs and bytes that are no valid UTF-8 included. No state.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// The key by which `text` sorts, compared byte by byte: its upper-cased letters without their
// marks. A byte that is not part of valid UTF-8 is kept as it is. Texts with the same key are put
// in order by CollateKeyed.
// Source: the canonical decomposition of Unicode, as utf8proc has it. Marks are the characters of
// the general categories Mn and Me; a spacing mark (Mc), such as an Indic vowel sign, is a letter.
std::string SortKey(std::string_view text);

// The same, into `key`, whose memory is used again.
void MakeSortKey(std::string_view text, std::string &key);

// The order of two texts: by SortKey, then by the upper-cased texts (so that "Eric" comes before
// "Éric"). Returns: below 0, 0 for texts that differ at most in letter case, above 0.
int CollateText(std::string_view first, std::string_view second);

// The same for texts whose sort keys are known; for sorting, where each text is compared often.
int CollateKeyed(std::string_view firstKey, std::string_view first, std::string_view secondKey,
                 std::string_view second);

} // namespace runtime
