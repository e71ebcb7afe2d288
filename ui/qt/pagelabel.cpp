#include "ui/qt/pagelabel.h"

#include <QPainter>
#include <QTextLayout>
#include <cmath>

namespace ui::qt
{

namespace
{

constexpr qreal kLeading = 1.15; // line height as a multiple of the font's own

// Lays `layout` out from the top; the height that its lines take.
qreal LayLines(QTextLayout &layout, int width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        line.setPosition({0, std::round(y)});
        y += line.height() * kLeading;
    }
    layout.endLayout();
    return y;
}

QString Separated(QString text)
{
    return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

// The palette's text, mixed with its ground: still well above the contrast that small type needs.
QColor Faint(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text), base = palette.color(QPalette::Base);
    const auto mix = [](int a, int b) { return (a * 62 + b * 38) / 100; };
    return {mix(text.red(), base.red()), mix(text.green(), base.green()),
            mix(text.blue(), base.blue())};
}

// The places of the captions: from the start of each paragraph through its first ": ". A text that
// begins with an empty line is a list of names, which have none.
QList<QTextLayout::FormatRange> CaptionRanges(const QString &text, const QColor &colour)
{
    QList<QTextLayout::FormatRange> ranges;
    if (text.startsWith(QLatin1Char('\n')))
        return ranges;
    QTextCharFormat format;
    format.setForeground(colour);
    qsizetype start = 0;
    while (start < text.size()) {
        const qsizetype end = text.indexOf(QLatin1String("\n\n"), start);
        const qsizetype colon = text.indexOf(QLatin1String(": "), start);
        if (colon >= 0 && (end < 0 || colon < end))
            ranges.append({static_cast<int>(start), static_cast<int>(colon + 1 - start), format});
        if (end < 0)
            break;
        start = end + 2;
    }
    return ranges;
}

} // namespace

PageLabel::PageLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

int PageLabel::HeightFor(const QString &text, int widthPixels) const
{
    QTextLayout layout(Separated(text), font()); // an empty text takes a line, too
    return static_cast<int>(std::ceil(LayLines(layout, widthPixels)));
}

void PageLabel::paintEvent(QPaintEvent *event)
{
    if (text().isEmpty())
        return;
    QTextLayout layout(Separated(text()), font());
    LayLines(layout, width());
    QPainter painter(this);
    const QColor faint = Faint(palette());
    painter.setPen(m_faint ? faint : palette().color(QPalette::Text));
    const auto ranges =
        m_faintCaptions ? CaptionRanges(text(), faint) : QList<QTextLayout::FormatRange>();
    layout.draw(&painter, {0, 0}, ranges, event->rect());
}

} // namespace ui::qt
