// ui/qt/qttext.h - how the program's texts are shown in widgets: captions, cells, tips. No state,
// no errors.
#pragma once

#include "platform/qt/text.h"

#include <QString>
#include <string>
#include <string_view>

namespace ui::qt
{

using platform::qt::FromQt;
using platform::qt::ToQt;

// A caption as a label shows it: "&&" is an ampersand, a single "&" (the mark of an access key) is
// removed, carriage returns and line feeds break the line, a tab is a blank. Other control
// characters are removed (many programs write a NUL after a tag's text). The result is plain text.
[[nodiscard]] QString LabelText(std::string_view caption);

// A caption as a menu entry shows it. "&" marks the access key; a shortcut after several blanks
// ("&File Info Alt+3") is shown at the right edge. CR and TAB become blanks, so that no file name
// can look like a column.
[[nodiscard]] QString MenuText(std::string_view caption);

// The text of a node or cell in one line: control characters become blanks, blanks at the end are
// cut, and so is everything after 2000 bytes.
[[nodiscard]] QString OneLineText(std::string_view text);

// The text with the codes of all characters that cannot be seen or that look like others: control
// characters, blanks other than the usual one, characters without a width, combining marks:
// "a[U+00A0]b". Empty when there is none, so that no tip is needed.
[[nodiscard]] QString OddCharactersShown(std::string_view text);

// A tool tip that shows `text` unchanged, whatever marks it contains, with long lines broken. Empty
// for an empty text, so that no tip is shown.
[[nodiscard]] QString TipText(const QString &text);

} // namespace ui::qt
