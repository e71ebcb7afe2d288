// ui/qt/qttext.h - how the program's texts look in widgets: captions, cells, tips. No state, no
// errors.
#pragma once

#include "platform/qt/text.h"

#include <QString>
#include <string>
#include <string_view>

namespace ui::qt
{

using platform::qt::FromQt;
using platform::qt::ToQt;

// What a label shows of a caption: "&&" is an ampersand, a lone "&" (the mark of an access key) is
// not shown, carriage returns and line feeds break the line, a tab is a blank, and other control
// characters (the NUL that many programs write after a tag's text) are not shown. The result is
// plain text.
[[nodiscard]] QString LabelText(std::string_view caption);

// What a menu entry shows of a caption. "&" marks its access key as in the caption; a shortcut that
// is inside the caption after blanks ("&File Info             Alt+3") becomes the shortcut's
// own place at the right edge. CR and TAB become blanks, so that no file name can fake a column.
[[nodiscard]] QString MenuText(std::string_view caption);

// A text of a node or cell, on one line: control characters become blanks, blanks at its end go,
// and what is longer than 2000 bytes is cut.
[[nodiscard]] QString OneLineText(std::string_view text);

// The text with the code of each character that does not show, or that looks like another: control
// characters, blanks that are no plain blank, marks without a width, combining marks: "a[U+00A0]b".
// Empty for a text without any, so that it needs no tip.
[[nodiscard]] QString OddCharactersShown(std::string_view text);

// A tool tip that shows `text` unchanged, whatever marks it has, and breaks long lines. Empty
// for an empty text, so that no tip shows.
[[nodiscard]] QString TipText(const QString &text);

} // namespace ui::qt
