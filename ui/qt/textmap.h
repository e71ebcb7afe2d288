// ui/qt/textmap.h - converts an edited text to what a widget shows, and positions in both
// directions. No state, no errors.
//
// A widget counts UTF-16 units and has one LF for each line break. The program's text is UTF-8 with
// any line breaks (CR LF, CR or LF), and its positions count characters.
#pragma once

#include "ui/controls/inputs/textbox.h"

#include <QString>
#include <string>
#include <string_view>

namespace ui::qt
{

// The text as a widget shows it. With several lines: LF for each line break; in one line: a blank
// for each character of a line break. Other control characters are blanks too.
[[nodiscard]] QString ShownText(std::string_view text, bool multiLine);

// The position in the shown text for one in `text`, and the reverse. A position inside a CR LF
// becomes the one before the line break.
[[nodiscard]] int ShownPosition(std::string_view text, bool multiLine, int position);
[[nodiscard]] int TextPosition(std::string_view text, bool multiLine, int shownPosition);

// `text` after the user has changed its shown form to `shown`; `caret` is the caret's position
// there. Unchanged parts keep their bytes, so line breaks and characters that the widget cannot
// show stay as they were. New line breaks are CR LF.
[[nodiscard]] std::string EditedText(std::string_view text, bool multiLine, const QString &shown,
                                     int caret);

} // namespace ui::qt
