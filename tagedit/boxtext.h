// tagedit/boxtext.h - what a box shows of a tag's field, and what becomes of the field's bytes when
// the user changes that. Fields are file bytes, boxes hold UTF-8. No state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tagedit
{

// The field as a box shows it: up to its first NUL, as text.
[[nodiscard]] std::string ShownText(std::string_view field);

// The field behind a box that was filled with ShownText(field) and now holds `edited`. A text that
// was not touched gives `field` itself. Of a changed one the beginning and the end that are still
// the same keep their bytes, line ends included; in between every line end becomes a carriage
// return and a line feed, and what the code page lacks a "?". What lay behind a NUL goes.
[[nodiscard]] std::string EditedField(std::string_view field, std::string_view edited);

// How many characters of the code page `text` takes: one for each character of it.
[[nodiscard]] std::size_t CountCharacters(std::string_view text);

// The first `count` characters of `text`, all of it where it has fewer; a view into `text`.
[[nodiscard]] std::string_view LeftCharacters(std::string_view text, std::size_t count);

} // namespace tagedit
