// ui/qt/widgets/splitterview.h - shows a ui::Splitter: dragged with the mouse, or moved with the
// keys Left and Right.
#pragma once

#include "ui/controls/inputs/splitter.h"

#include <QWidget>

namespace ui::qt
{

// The bar is only a few pixels wide. A grip over it and the pixels beside it receives the mouse, so
// that it is easier to grab; its object name is "SeparatorGrip". Where the mouse was pressed beside
// the bar, the place that `moved` gets is without that distance, so that the bar does not jump to
// the mouse. A key moves the bar by ten pixels.
class SplitterView : public QWidget
{
public:
    // `splitter` outlives the view.
    SplitterView(ui::Splitter &splitter, QWidget *parent);

    // Puts the grip in front of the widgets beside the bar.
    void RaiseGrip();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void MoveByKey(int key);

    ui::Splitter &m_splitter;
    QWidget *m_grip;        // owned by the parent of the bar
    double m_grabbedAt = 0; // where the mouse was pressed, in pixels beside the bar; 0 for inside
};

} // namespace ui::qt
