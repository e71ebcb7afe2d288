// ui/qt/widgets/stripmenu.h - a popup menu with a picture strip at its left edge and lines that are
// titles.
#pragma once

#include <QMenu>
#include <functional>

namespace ui::qt
{

class StripMenu : public QMenu
{
public:
    // `draw` paints the strip in the given size (pixels of the window); called at each change of
    // the menu's height.
    using DrawStrip = std::function<QPixmap(QSize size, qreal scale)>;

    StripMenu(int stripWidth, DrawStrip draw, QWidget *parent);

    // Adds a line that cannot be chosen, as a title for the entries below it.
    void AddTitle(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_stripWidth;
    DrawStrip m_draw;
    QPixmap m_strip; // as it was last drawn
};

} // namespace ui::qt
