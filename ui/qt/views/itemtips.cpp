#include "ui/qt/views/itemtips.h"

#include "ui/qt/qttext.h"

#include <QHelpEvent>
#include <QToolTip>

namespace ui::qt
{

namespace
{

// Whether the item is too narrow for the text, or partly outside the view.
bool IsCut(const QTreeView &view, const QModelIndex &index, const QString &text)
{
    const QRect place = view.visualRect(index);
    const QStyle *style = view.style();
    int needed = view.fontMetrics().horizontalAdvance(text);
    needed += 2 * (style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1);
    if (!index.data(Qt::DecorationRole).isNull())
        needed += view.iconSize().width() + 4;
    return needed > place.width() || place.left() < 0 ||
           place.left() + needed > view.viewport()->width();
}

} // namespace

bool ShowTipOfCutText(QTreeView &view, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return false;
    const auto *help = static_cast<QHelpEvent *>(event);
    const QModelIndex index = view.indexAt(help->pos());
    const QString text = index.data(Qt::DisplayRole).toString();
    const QString own = index.data(Qt::ToolTipRole).toString();
    if (!own.isEmpty())
        QToolTip::showText(help->globalPos(), TipText(own), view.viewport(),
                           view.visualRect(index));
    else if (!text.isEmpty() && IsCut(view, index, text))
        QToolTip::showText(help->globalPos(), TipText(text), view.viewport(),
                           view.visualRect(index));
    else
        QToolTip::hideText();
    return true;
}

} // namespace ui::qt
