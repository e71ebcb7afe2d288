// ui/qt/widgets/splitter.h - the splitter between two parts of a window: dragged with the mouse, or
// moved with the keys Left and Right. What a move changes is up to the window.
#pragma once

#include "ui/controls/area.h"

#include <QWidget>
#include <functional>

namespace ui::qt
{

// The bar is only a few pixels wide. A grip over it and the pixels beside it receives the mouse, so
// that it is easier to grab. The bar's object name is "Separator", the grip's is "SeparatorGrip".
class Splitter : public QWidget
{
public:
    // The bar is at the place of `area`, and visible when that is. `area` outlives it.
    Splitter(Area &area, QWidget *parent);

    // Puts the grip in front of the widgets beside the bar.
    void RaiseGrip();

    // The mouse was pressed, moved, released over the grip. `mouseX`: twips from the left edge of
    // the bar, with fractions; where the mouse was pressed beside the bar, without that distance,
    // so that the bar does not jump to the mouse. A key calls all three, with a move of ten pixels.
    std::function<void()> pressed, released;
    std::function<void(double mouseX)> moved;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void MoveByKey(int key);

    QWidget *m_grip;        // owned by the parent of the bar
    double m_grabbedAt = 0; // where the mouse was pressed, in pixels beside the bar; 0 for inside
};

} // namespace ui::qt
