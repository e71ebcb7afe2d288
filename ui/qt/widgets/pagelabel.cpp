#include "ui/qt/widgets/pagelabel.h"

#include "ui/twips.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ui::qt
{

namespace
{

constexpr qreal kLeading = 1.15; // height of a line as a multiple of the font's

// More pixels than the panel's scroll bar can reach (32,767 twips), plus the largest screen.
constexpr qreal kHighest = 32767.0 / ui::kTwipsPerPixel + 4320;

// The number of characters that are laid out together. No line of the panel is longer, except one
// of characters without a width, which is broken here.
constexpr qsizetype kPieceLength = 300;

// The end of the piece that begins at `start`: the end of its paragraph, or a place in the middle
// of it.
qsizetype EndOfPiece(const QString &text, qsizetype start)
{
    const qsizetype most = std::min(text.size(), start + kPieceLength);
    const qsizetype end = text.indexOf(QLatin1Char('\n'), start);
    if (end >= 0 && end < most)
        return end;
    if (most < text.size() && text[most].isLowSurrogate())
        return most - 1;
    return most;
}

// Lays out the lines of a piece from `top` on. If the paragraph continues after the piece, the last
// line is left for the next piece, unless it is the only one.
qsizetype LayLines(QTextLayout &layout, bool isParagraphsEnd, Qt::LayoutDirection direction,
                   int width, qreal &top)
{
    QTextOption option;
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qsizetype taken = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        const qsizetype end = line.textStart() + line.textLength();
        const bool isLast = end >= layout.text().size();
        if (isLast && !isParagraphsEnd && taken > 0) {
            line.setPosition({0, 2 * kHighest}); // where it is never seen
            break;
        }
        line.setPosition({0, std::round(top)});
        top += line.height() * kLeading;
        taken = end;
    }
    layout.endLayout();
    return isParagraphsEnd ? layout.text().size() : taken;
}

// The colour of the text mixed with that of the background; the contrast is still enough for small
// letters.
QColor Faint(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text), base = palette.color(QPalette::Base);
    const auto mix = [](int a, int b) { return (a * 62 + b * 38) / 100; };
    return {mix(text.red(), base.red()), mix(text.green(), base.green()),
            mix(text.blue(), base.blue())};
}

// The captions: from the start of each paragraph up to its first ": ". A text that begins with an
// empty line is a list of names, which has no captions.
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
        const auto paragraph = QStringView(text).mid(start, end < 0 ? -1 : end - start);
        const qsizetype colon = start + paragraph.indexOf(QLatin1String(": "));
        if (colon >= start)
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
    setCursor(Qt::IBeamCursor);
}

QString PageLabel::SelectedText() const
{
    return m_selectedIn == text()
               ? text().mid(std::min(m_anchor, m_caret), std::abs(m_caret - m_anchor))
               : QString();
}

void PageLabel::SelectAll()
{
    Select(0, text().size());
}

void PageLabel::Deselect()
{
    Select(0, 0);
}

void PageLabel::Select(qsizetype anchor, qsizetype caret)
{
    m_selectedIn = text();
    m_anchor = anchor;
    m_caret = caret;
    update();
}

qsizetype PageLabel::PositionAt(QPointF place) const
{
    const Lines &lines = LayOut(text(), width());
    qsizetype position = 0;
    for (const Piece &piece : lines.pieces)
        for (int i = 0; i < piece.layout->lineCount(); ++i) {
            const QTextLine line = piece.layout->lineAt(i);
            if (line.y() > kHighest || (line.y() > place.y() && position > 0))
                break;
            position = piece.start + line.xToCursor(place.x());
        }
    return std::min(position, text().size());
}

void PageLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (onSelect)
        onSelect();
    const qsizetype position = PositionAt(event->position());
    Select(position, position);
}

void PageLabel::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton) && m_selectedIn == text())
        Select(m_anchor, PositionAt(event->position()));
}

// Selects a word.
void PageLabel::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const qsizetype position = PositionAt(event->position());
    qsizetype start = position, end = position;
    while (start > 0 && !text()[start - 1].isSpace())
        --start;
    while (end < text().size() && !text()[end].isSpace())
        ++end;
    Select(start, end);
}

// The lines of a text with captions all have the direction of the window's language; a paragraph of
// any other text has the direction of its first letter.
Qt::LayoutDirection PageLabel::DirectionOf(QStringView paragraph) const
{
    if (m_faintCaptions)
        return layoutDirection();
    return paragraph.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

const PageLabel::Lines &PageLabel::LayOut(const QString &text, int widthPixels) const
{
    if (m_lines.width == widthPixels && m_lines.text == text && m_lines.font == font())
        return m_lines;
    m_lines = {text, widthPixels, font(), {}, 0};
    bool isTextsEnd = false; // a line end at the end begins one more line
    bool isParagraphsStart = true;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    for (qsizetype start = 0; !isTextsEnd && m_lines.height < kHighest;) {
        const qsizetype end = EndOfPiece(text, start);
        const bool isParagraphsEnd = end == text.size() || text[end] == QLatin1Char('\n');
        if (isParagraphsStart)
            direction = DirectionOf(QStringView(text).mid(start, end - start));
        isParagraphsStart = isParagraphsEnd;
        QString laid = text.mid(start, end - start);
        laid.replace(QChar(QChar::Nbsp),
                     QLatin1Char(' ')); // so that a line can end there instead of inside a word
        Piece piece{std::make_unique<QTextLayout>(laid, font()), start, 0, m_lines.height, 0};
        piece.length =
            LayLines(*piece.layout, isParagraphsEnd, direction, widthPixels, m_lines.height);
        piece.bottom = m_lines.height;
        start += piece.length + (isParagraphsEnd ? 1 : 0);
        m_lines.pieces.push_back(std::move(piece));
        isTextsEnd = isParagraphsEnd && end == text.size();
    }
    return m_lines;
}

int PageLabel::HeightFor(const QString &text, int widthPixels) const
{
    return static_cast<int>(std::ceil(LayOut(text, widthPixels).height));
}

void PageLabel::paintEvent(QPaintEvent *event)
{
    if (text().isEmpty())
        return;
    QPainter painter(this);
    const QColor faint = Faint(palette());
    painter.setPen(m_faint ? faint : palette().color(QPalette::Text));
    const Lines &lines = LayOut(text(), width());
    const qsizetype shown =
        lines.pieces.back().start + lines.pieces.back().length; // the rest is never seen
    const auto captions = m_faintCaptions ? CaptionRanges(text().left(shown), faint)
                                          : QList<QTextLayout::FormatRange>();
    for (const Piece &piece : lines.pieces) {
        if (piece.bottom < event->rect().top() || piece.top > event->rect().bottom())
            continue;
        QList<QTextLayout::FormatRange> ranges; // captions that begin in this piece
        for (QTextLayout::FormatRange range : captions) {
            range.start -= static_cast<int>(piece.start);
            if (range.start < piece.length && range.start + range.length > 0)
                ranges.append(range);
        }
        if (const QString selected = SelectedText(); !selected.isEmpty()) {
            QTextLayout::FormatRange range;
            range.start = static_cast<int>(std::min(m_anchor, m_caret) - piece.start);
            range.length = static_cast<int>(selected.size());
            range.format.setBackground(palette().brush(QPalette::Highlight));
            range.format.setForeground(palette().brush(QPalette::HighlightedText));
            if (range.start < piece.length && range.start + range.length > 0) {
                range.length += std::min(0, range.start);
                range.start = std::max(0, range.start);
                ranges.append(range);
            }
        }
        piece.layout->draw(&painter, {0, 0}, ranges, event->rect());
    }
}

} // namespace ui::qt
