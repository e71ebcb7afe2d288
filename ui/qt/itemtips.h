// ui/qt/itemtips.h - the tool tip of a tree's node or a list's cell whose text does not fit.
#pragma once

#include <QTreeView>

namespace ui::qt
{

// Answers the tool tip event of `view`: shows the tip of the item under the mouse where it has one
// of its own, its whole text when that is cut, and hides the tip otherwise. False for any other
// event, which the view then handles itself.
bool ShowTipOfCutText(QTreeView &view, QEvent *event);

} // namespace ui::qt
