#include "ui/qt/views/rowdelegate.h"

#include <QApplication>

namespace ui::qt
{

namespace
{

constexpr int kRowSpace = 8; // free pixels above and below a line of text, in total

// In front of a text this character sets the direction from right to left, so that a text that is
// too long is cut at its left end.
constexpr QChar kRightToLeftIsolate(0x2067);

const QStyle &StyleOf(const QStyleOptionViewItem &option)
{
    return option.widget != nullptr ? *option.widget->style() : *QApplication::style();
}

// The width for the text of the row, in pixels.
int TextRoom(const QStyleOptionViewItem &option)
{
    const QStyle &style = StyleOf(option);
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
    return style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget).width() -
           2 * margin;
}

bool IsPath(const QString &text)
{
    return text.startsWith(QLatin1Char('/'));
}

} // namespace

QString ElidedPath(const QString &path, const QFontMetrics &metrics, int width)
{
    if (metrics.horizontalAdvance(path) <= width)
        return path;
    const qsizetype name = path.lastIndexOf(QLatin1Char('/'));
    const QString end = path.mid(name);
    const int room = width - metrics.horizontalAdvance(end);
    if (name > 0 && room > metrics.horizontalAdvance(QChar(0x2026)))
        return metrics.elidedText(path.left(name), Qt::ElideMiddle, room) + end;
    return metrics.elidedText(path.mid(name + 1), Qt::ElideMiddle, width);
}

void RowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    if (IsPath(row.text))
        row.text = ElidedPath(row.text, row.fontMetrics, TextRoom(row));
    StyleOf(row).drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), option.fontMetrics.height() + kRowSpace));
    return size;
}

void RowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->text.isEmpty()) {
        option->text = index.data(kTextOfEmptyRole).toString();
        if (!option->text.isEmpty()) {
            option->features |= QStyleOptionViewItem::HasDisplay;
            const QBrush grey = option->palette.brush(QPalette::PlaceholderText);
            option->palette.setBrush(QPalette::Text, grey);
        }
    }
    if (option->text.isRightToLeft() && !IsPath(option->text))
        option->text.prepend(kRightToLeftIsolate);
    // In a window without the focus the selection is as pale as the window, so the icon must be
    // that of the other rows.
    const bool selected = option->state.testFlag(QStyle::State_Selected);
    if (!selected || option->state.testFlag(QStyle::State_Active) || option->icon.isNull())
        return;
    const qreal scale = option->widget != nullptr ? option->widget->devicePixelRatioF() : 1.0;
    const QPixmap drawn = option->icon.pixmap(option->decorationSize, scale, QIcon::Normal);
    option->icon = QIcon(drawn);
    option->icon.addPixmap(drawn, QIcon::Selected);
}

} // namespace ui::qt
