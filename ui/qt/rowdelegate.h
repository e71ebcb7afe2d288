// ui/qt/rowdelegate.h - rows with room to breathe, and the mark of the focus around a whole row.
#pragma once

#include <QStyledItemDelegate>
#include <QWidget>

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

protected:
    // The selection of a window without the focus is pale where the window is: the icon is the one
    // of any other row then.
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const bool selected = option->state.testFlag(QStyle::State_Selected);
        if (!selected || option->state.testFlag(QStyle::State_Active) || option->icon.isNull())
            return;
        const qreal scale = option->widget != nullptr ? option->widget->devicePixelRatioF() : 1.0;
        const QPixmap drawn = option->icon.pixmap(option->decorationSize, scale, QIcon::Normal);
        option->icon = QIcon(drawn);
        option->icon.addPixmap(drawn, QIcon::Selected);
    }

private:
    static constexpr int kAir = 8; // pixels above and below a line of text, together
};

} // namespace ui::qt
