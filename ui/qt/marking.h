// ui/qt/marking.h - the colours of text boxes, in light and dark windows: of a text that is wrong,
// and of the selection.
#pragma once

#include <QWidget>

namespace ui::qt
{

// Marks a box with text, or removes the mark. The colour follows a change between light and dark.
void ShowMark(QWidget *box, bool marked);

// From now on the selection keeps its colours when another widget or window has the focus: it shows
// the current line of a song. They follow a change between light and dark.
void KeepSelectionBright(QWidget *box);

} // namespace ui::qt
