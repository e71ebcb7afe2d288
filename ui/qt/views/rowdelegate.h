// ui/qt/views/rowdelegate.h - draws rows: with free space, with one focus mark around the whole
// row, with paths shortened in their middle, with grey words in place of an empty text, and with a
// text that begins in a script from right to left in that direction.
#pragma once

#include <QFontMetrics>
#include <QStyledItemDelegate>
#include <QWidget>

namespace ui::qt
{

// The role of the words that are drawn in place of an empty text; without words nothing is drawn.
inline constexpr int kTextOfEmptyRole = Qt::UserRole + 1;

// The path, shortened to `width` pixels: its folder is cut in the middle, so that the name of the
// file can be read; the name is cut in its middle only when it is too wide by itself.
[[nodiscard]] QString ElidedPath(const QString &path, const QFontMetrics &metrics, int width);

class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

} // namespace ui::qt
