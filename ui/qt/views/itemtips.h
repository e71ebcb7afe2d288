// ui/qt/views/itemtips.h - the tool tip for a node of a tree or a cell of a list whose text is cut.
#pragma once

#include <QTreeView>

namespace ui::qt
{

// Handles the tool tip event of `view`: shows the item's own tip if it has one, its whole text if
// that is cut, else hides the tip. Returns: false for any other event, which the view must handle
// itself.
bool ShowTipOfCutText(QTreeView &view, QEvent *event);

} // namespace ui::qt
