#include "ui/qt/widgets/elidedlabel.h"

#include "ui/qt/qttext.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>

namespace ui::qt
{

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::SetFullText(const QString &text)
{
    if (text == m_fullText)
        return;
    m_fullText = text;
    setAccessibleDescription(text);
    Fit();
}

void ElidedLabel::SetElideMode(Qt::TextElideMode mode)
{
    m_elide = mode;
    Fit();
}

void ElidedLabel::SetSelectable()
{
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setContextMenuPolicy(
        Qt::NoContextMenu); // the toolkit's own menu is in English and copies the shortened text
}

void ElidedLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) && hasSelectedText() && selectedText() == text())
        QGuiApplication::clipboard()->setText(m_fullText);
    else
        QLabel::keyPressEvent(event);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    Fit();
}

void ElidedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        Fit();
}

void ElidedLabel::Fit()
{
    QString line = m_fullText;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QString shown = fontMetrics().elidedText(line, m_elide, contentsRect().width());
    if (shown != text())
        setText(shown);
    setToolTip(shown == line ? QString() : TipText(m_fullText));
}

} // namespace ui::qt
