// tagedit/boxtext.h - the text that a box shows for a tag's field, and how the bytes of the field
// change when the user changes that. Fields are of the kind of their record, boxes hold UTF-8. No
// state.
#pragma once

#include "metadata/records.h"

#include <string>
#include <string_view>

namespace tagedit
{

// The field as a box shows it: up to its first NUL, as text.
[[nodiscard]] std::string ShownText(std::string_view field,
                                    metadata::TextKind kind = metadata::TextKind::FileBytes);

// The new field for a box that was filled with ShownText(field) and now has the text `edited`. An
// unchanged text returns `field` itself. In a changed text, the beginning and the end that are
// still the same keep their bytes, line ends included. Between them every line end becomes a
// carriage return and a line feed; if the field is file bytes, a character that the code page does
// not have becomes "?". The part of the field after a NUL is lost.
[[nodiscard]] std::string EditedField(std::string_view field, std::string_view edited,
                                      metadata::TextKind kind = metadata::TextKind::FileBytes);

} // namespace tagedit
