// ui/qt/rowdelegate.h - how rows are drawn: with room to breathe, with the mark of the focus around
// a whole row, paths cut in their middle, and grey words in place of an empty text.
#pragma once

#include <QFontMetrics>
#include <QStyledItemDelegate>
#include <QWidget>

namespace ui::qt
{

// The models' role of the words that are drawn where the text is empty; no words: nothing is.
inline constexpr int kTextOfEmptyRole = Qt::UserRole + 1;

// A path that fits `width` pixels: cut in the middle of its folder, so that the file's name stays;
// the name itself is cut in its middle where it alone is wider.
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
