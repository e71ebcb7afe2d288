// ui/qt/marking.h - the mark of a box whose text has something wrong with it: a colour of its own
// for the text, in light and dark windows.
#pragma once

#include <QWidget>

namespace ui::qt
{

// Marks a box that shows text, or takes the mark from it. It follows a change between light and
// dark.
void ShowMark(QWidget *box, bool marked);

} // namespace ui::qt
