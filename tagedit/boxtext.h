// tagedit/boxtext.h - what a box shows of a tag's field, and which bytes the field gets when the
// user changes the text. Fields are file bytes, texts of boxes are UTF-8. No state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tagedit
{

// The field up to its first NUL, as UTF-8.
[[nodiscard]] std::string ShownText(std::string_view field);

// The bytes of the field for a box that was filled with ShownText(field) and has the text `edited`
// now. An unchanged text gives `field` itself. In a changed text, the parts at the beginning and at
// the end that are still the same keep their bytes, line ends included; between them each line end
// becomes CR LF, and a character that the code page lacks becomes "?". What followed a NUL in the
// field is lost.
[[nodiscard]] std::string EditedField(std::string_view field, std::string_view edited);

// The number of file bytes that `text` (UTF-8) takes: one for each character.
[[nodiscard]] std::size_t CountCharacters(std::string_view text);

// The first `count` characters of `text`, or all of it when it has fewer. The result is a view into
// `text`.
[[nodiscard]] std::string_view LeftCharacters(std::string_view text, std::size_t count);

} // namespace tagedit
