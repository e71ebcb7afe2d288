// ui/qt/textmap.h - how a text that is edited looks in a widget, and positions in the one and the
// other. No state, no errors.
//
// A widget counts UTF-16 units and breaks lines with one LF; the program's text is UTF-8 with line
// breaks as they came (CR LF, CR or LF), and its positions count characters.
#pragma once

#include "ui/controls/textbox.h"

#include <QString>
#include <string>
#include <string_view>

namespace ui::qt
{

// The text as a widget shows it: of several lines with LF for each line break, on one line with a
// blank for each character of a break; other control characters are blanks too.
[[nodiscard]] QString ShownText(std::string_view text, bool multiLine);

// A place in the shown text for one in `text`, and back. Inside a CR LF the shown place is before
// the break.
[[nodiscard]] int ShownPosition(std::string_view text, bool multiLine, int position);
[[nodiscard]] int TextPosition(std::string_view text, bool multiLine, int shownPosition);

// `text` changed as the user changed what is shown of it into `shown`, with the caret at `caret`
// there: what did not change keeps its bytes, so that a line break or a character that the widget
// cannot show stays as it was. New line breaks are CR LF.
[[nodiscard]] std::string EditedText(std::string_view text, bool multiLine, const QString &shown,
                                     int caret);

} // namespace ui::qt
