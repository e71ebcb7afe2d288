#include "ui/qt/widgets/textpane.h"

#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

namespace ui::qt
{

namespace
{

QSize LargestSize(const QWidget &widget)
{
    const QScreen *screen = widget.screen();
    return screen != nullptr ? screen->availableSize() * 2 / 3 : QSize(600, 400);
}

} // namespace

TextPane::TextPane(int columns, QWidget *parent)
    : QScrollArea(parent), m_columns(columns), m_text(new QLabel)
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setWidget(m_text);
    viewport()->setAutoFillBackground(false);
    m_text->setAutoFillBackground(false);
    Fit();
}

void TextPane::SetText(const QString &text)
{
    if (text == m_text->text())
        return;
    m_text->setText(text);
    m_text->setAccessibleName(text);
    Fit();
}

void TextPane::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        Fit();
}

// A line breaks between words only: a word that is longer than a line, such as a path, makes the
// text wider.
void TextPane::Fit()
{
    const QSize largest = LargestSize(*this);
    const QFontMetrics letters = m_text->fontMetrics();
    const int column = std::min(letters.averageCharWidth() * m_columns, largest.width());
    const int natural = letters.size(0, m_text->text()).width();
    const int longestWord = m_text->minimumSizeHint().width();
    const int width = std::max(std::min(natural, column) + 2, longestWord);
    m_text->setFixedSize(width, std::max(0, m_text->heightForWidth(width))); // -1 without a text

    const bool wider = width > largest.width();
    const bool higher = m_text->height() > largest.height();
    const int barWidth = verticalScrollBar()->sizeHint().width();
    const int barHeight = horizontalScrollBar()->sizeHint().height();
    setFixedSize(std::min(width, largest.width()) + (higher ? barWidth : 0),
                 std::min(m_text->height(), largest.height()) + (wider ? barHeight : 0));
    setFocusPolicy(wider || higher ? Qt::StrongFocus : Qt::NoFocus); // the arrow keys scroll
}

} // namespace ui::qt
