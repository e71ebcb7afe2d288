// ui/qt/stripmenu.h - a popup menu with a picture strip along its left edge and title lines.
#pragma once

#include <QMenu>
#include <functional>

namespace ui::qt
{

class StripMenu : public QMenu
{
public:
    // `draw` paints the strip into a picture of the size it is given (pixels of the window), at
    // each change of the menu's height.
    using DrawStrip = std::function<QPixmap(QSize size, qreal scale)>;

    StripMenu(int stripWidth, DrawStrip draw, QWidget *parent);

    // A line that cannot be chosen, as the head of the entries below it.
    void AddTitle(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_stripWidth;
    DrawStrip m_draw;
    QPixmap m_strip; // as last drawn
};

} // namespace ui::qt
