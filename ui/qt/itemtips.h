// ui/qt/itemtips.h - the tool tip of a tree's node or a list's cell whose text does not fit.
#pragma once

#include <QTreeView>

namespace ui::qt
{

// Answers the tool tip event of `view`: shows the whole text of the item under the mouse when it is
// cut, hides the tip otherwise. False for any other event, which the view then handles itself.
bool ShowTipOfCutText(QTreeView &view, QEvent *event);

} // namespace ui::qt
