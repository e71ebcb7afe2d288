#include "platform/qt/ownstyle.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace platform::qt
{

namespace
{

constexpr int kBarPixels = 6; // the height of a progress bar
constexpr qreal kCorner = 2;  // pixels

// Fusion draws outlines in the window's colour, darkened to 100/140. With this as the window's
// colour the outlines have the colour `outline`.
QColor WindowFor(const QColor &outline)
{
    const auto lighter = [](int part) { return std::min(255, part * 140 / 100); };
    return {lighter(outline.red()), lighter(outline.green()), lighter(outline.blue())};
}

template <class Option>
Option Outlined(const Option &option, const QColor &outline)
{
    Option changed(option);
    changed.palette.setColor(QPalette::Window, WindowFor(outline));
    return changed;
}

bool IsDark(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

// A menu's background with its border.
void DrawMenuPanel(const QRect &place, const QPalette &palette, QPainter *painter)
{
    painter->save();
    painter->setPen(RuleColour(palette));
    painter->setBrush(palette.color(QPalette::Base));
    painter->drawRect(place.adjusted(0, 0, -1, -1));
    painter->restore();
}

// Draws the frame of a group, below its title.
void DrawGroup(const QStyleOptionFrame &group, int indicatorHeight, QPainter *painter)
{
    constexpr int kBelowTitle = 3;
    const int title = std::max(indicatorHeight, group.fontMetrics.height()) + kBelowTitle;
    const QRectF frame = group.rect.adjusted(0, title, 0, 0);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(RuleColour(group.palette));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
    painter->restore();
}

void DrawToolBarRule(const QStyleOption &rule, QPainter *painter)
{
    constexpr int kMargin = 4;
    painter->save();
    painter->setPen(RuleColour(rule.palette));
    const QRect place = rule.rect;
    if (rule.state.testFlag(QStyle::State_Horizontal))
        painter->drawLine(place.center().x(), place.top() + kMargin, place.center().x(),
                          place.bottom() - kMargin);
    else
        painter->drawLine(place.left() + kMargin, place.center().y(), place.right() - kMargin,
                          place.center().y());
    painter->restore();
}

// Draws the frame around the row with the focus; the row keeps the colours that its selection gives
// it. In a list where only one row can be selected, the selected row has no frame.
void DrawRowsFocus(const QStyleOption &row, const QAbstractItemView &view, QPainter *painter)
{
    const bool selected = row.state.testFlag(QStyle::State_Selected);
    if (selected && view.selectionMode() == QAbstractItemView::SingleSelection)
        return;
    QColor line = row.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight);
    line.setAlpha(selected ? 110 : 255);
    painter->save();
    painter->setPen(line);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(row.rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void DrawBar(const QStyleOptionProgressBar &bar, QPainter *painter)
{
    const int height = std::min(kBarPixels, bar.rect.height());
    QRectF groove(bar.rect.left(), bar.rect.top() + (bar.rect.height() - height) / 2.0,
                  bar.rect.width(), height);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(RuleColour(bar.palette));
    painter->drawRoundedRect(groove, kCorner, kCorner);
    const int range = bar.maximum - bar.minimum;
    if (range > 0 && bar.progress > bar.minimum) {
        const qreal share = std::min(1.0, qreal(bar.progress - bar.minimum) / range);
        const qreal width = groove.width() * share;
        if (bar.direction == Qt::RightToLeft)
            groove.setLeft(groove.right() - width);
        else
            groove.setWidth(width);
        painter->setBrush(bar.palette.color(QPalette::Active, QPalette::Highlight));
        painter->drawRoundedRect(groove, kCorner, kCorner);
    }
    painter->restore();
}

// Draws a separator line of a menu, with its title if it has one.
void DrawMenuRule(const QStyleOptionMenuItem &rule, QPainter *painter)
{
    constexpr int kMargin = 5;
    int left = rule.rect.left() + kMargin;
    painter->save();
    if (!rule.text.isEmpty()) {
        painter->setFont(rule.font);
        painter->setPen(rule.palette.color(QPalette::Text));
        painter->drawText(rule.rect.adjusted(kMargin, 0, -kMargin, 0),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, rule.text);
        left += QFontMetrics(rule.font).horizontalAdvance(rule.text) + kMargin;
    }
    painter->setPen(RuleColour(rule.palette));
    const int middle = rule.rect.center().y();
    painter->drawLine(left, middle, rule.rect.right() - kMargin, middle);
    painter->restore();
}

// The entry with its icon in the colours for a selected entry, if it is selected.
QStyleOptionMenuItem WithSelectedIcon(const QStyleOptionMenuItem &entry, const QStyle &style,
                                      const QWidget *widget)
{
    QStyleOptionMenuItem changed(entry);
    if (entry.state.testFlag(QStyle::State_Selected) &&
        entry.state.testFlag(QStyle::State_Enabled) && !entry.icon.isNull()) {
        const int side = style.pixelMetric(QStyle::PM_SmallIconSize, &entry, widget);
        const qreal scale = widget != nullptr ? widget->devicePixelRatioF() : 1.0;
        changed.icon = QIcon(entry.icon.pixmap(QSize(side, side), scale, QIcon::Selected));
    }
    return changed;
}

} // namespace

QColor RuleColour(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Mid);
}

QColor BoxOutline(const QPalette &palette)
{
    return IsDark(palette) ? QColor(0x79, 0x81, 0x8d) : QColor(0x78, 0x7f, 0x8a);
}

OwnStyle::OwnStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void OwnStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                             QPainter *painter, const QWidget *widget) const
{
    const auto draw = [&](const QStyleOption &changed) {
        QProxyStyle::drawPrimitive(element, &changed, painter, widget);
    };
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton) {
        if (const auto *box = qstyleoption_cast<const QStyleOptionButton *>(option))
            return draw(Outlined(*box, BoxOutline(box->palette)));
    } else if (element == PE_PanelMenu) {
        return DrawMenuPanel(option->rect, option->palette, painter);
    } else if (element == PE_Frame || element == PE_FrameLineEdit) {
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option))
            return draw(Outlined(*frame, RuleColour(frame->palette)));
    } else if (element == PE_PanelButtonCommand) {
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option))
            return draw(Outlined(*button, RuleColour(button->palette)));
    } else if (element == PE_FrameGroupBox) {
        if (const auto *group = qstyleoption_cast<const QStyleOptionFrame *>(option))
            return DrawGroup(*group, pixelMetric(PM_ExclusiveIndicatorHeight, option, widget),
                             painter);
    } else if (element == PE_IndicatorToolBarSeparator) {
        return DrawToolBarRule(*option, painter);
    } else if (element == PE_FrameFocusRect) {
        if (const auto *view = qobject_cast<const QAbstractItemView *>(widget))
            return DrawRowsFocus(*option, *view, painter);
    }
    draw(*option);
}

void OwnStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                           const QWidget *widget) const
{
    if (element == CE_ProgressBar)
        if (const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option))
            return DrawBar(*bar, painter);
    if (element == CE_MenuItem)
        if (const auto *entry = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            if (entry->menuItemType == QStyleOptionMenuItem::Separator)
                return DrawMenuRule(*entry, painter);
            const QStyleOptionMenuItem shown = WithSelectedIcon(*entry, *this, widget);
            return QProxyStyle::drawControl(element, &shown, painter, widget);
        }
    QProxyStyle::drawControl(element, option, painter, widget);
}

QSize OwnStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                 const QSize &contents, const QWidget *widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_ProgressBar ? QSize(size.width(), kBarPixels + 2) : size;
}

} // namespace platform::qt
