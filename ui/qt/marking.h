// ui/qt/marking.h - marks a text box whose text is wrong: its text has another colour, in light and
// dark windows.
#pragma once

#include <QWidget>

namespace ui::qt
{

// Marks a box with text, or removes the mark. The colour follows a change between light and dark.
void ShowMark(QWidget *box, bool marked);

} // namespace ui::qt
