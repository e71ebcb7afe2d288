// runtime/sortkey.h - the order in which lists show texts: without regard to case, accented letters
// beside their plain ones, digits as the characters they are. No state.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// A key whose order by bytes is the order of the texts: first the letters without case and accents,
// then the upper-cased text, so that "E", "é", "EA" stand in this order and texts that differ only
// in case are equal. A byte that is no part of valid UTF-8 counts as itself.
// Source: the canonical decomposition of Unicode, as utf8proc has it.
std::string SortKeyOf(std::string_view utf8);

} // namespace runtime
