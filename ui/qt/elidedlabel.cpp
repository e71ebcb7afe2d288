#include "ui/qt/elidedlabel.h"

#include "ui/qt/qttext.h"

#include <QEvent>

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
