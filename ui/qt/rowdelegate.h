// ui/qt/rowdelegate.h - rows with room to breathe, and the mark of the focus around a whole row.
#pragma once

#include <QStyledItemDelegate>

namespace ui::qt
{

class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(std::max(size.height(), option.fontMetrics.height() + kAir));
        return size;
    }

private:
    static constexpr int kAir = 8; // pixels above and below a line of text, together
};

} // namespace ui::qt
