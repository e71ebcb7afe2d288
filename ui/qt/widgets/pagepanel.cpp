#include "ui/qt/widgets/pagepanel.h"

#include "platform/qt/theme.h"

#include <QLinearGradient>
#include <QPainter>

namespace ui::qt
{

namespace
{

constexpr int kMargin = 8, kThickness = 2; // pixels, of the line

} // namespace

void PagePanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const bool dark = platform::qt::IsDark();
    if (!m_picture || m_pictureIsDark != dark) {
        m_picture =
            std::make_unique<QSvgRenderer>(dark ? QStringLiteral(":/pictures/page-dark.svg")
                                                : QStringLiteral(":/pictures/page-light.svg"));
        m_pictureIsDark = dark;
    }
    const QSizeF size = m_picture->defaultSize();
    m_picture->render(&painter, QRectF(0, 0, width(), width() * size.height() / size.width()));
    if (hasFocus()) { // keys scroll it
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void PageRule::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // The same in a window without the keyboard.
    QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
    QLinearGradient fade(kMargin, 0, width() - kMargin, 0);
    fade.setColorAt(0, colour);
    colour.setAlpha(40);
    fade.setColorAt(1, colour);
    painter.fillRect(kMargin, 0, width() - 2 * kMargin, kThickness, fade);
}

} // namespace ui::qt
