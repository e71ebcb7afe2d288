#include "ui/qt/widgets/stripmenu.h"

#include <QPainter>

namespace ui::qt
{

StripMenu::StripMenu(int stripWidth, DrawStrip draw, QWidget *parent)
    : QMenu(parent), m_stripWidth(stripWidth), m_draw(std::move(draw))
{
    setContentsMargins(stripWidth, 0, 0, 0);
}

void StripMenu::AddTitle(const QString &text)
{
    addSection(text);
}

void StripMenu::paintEvent(QPaintEvent *event)
{
    QMenu::paintEvent(event);
    const QRect place(1, 1, m_stripWidth, height() - 2);
    const qreal scale = devicePixelRatioF();
    if (m_strip.deviceIndependentSize().toSize() != place.size() ||
        m_strip.devicePixelRatio() != scale)
        m_strip = m_draw(place.size(), scale);
    QPainter painter(this);
    painter.drawPixmap(place, m_strip);
}

} // namespace ui::qt
