// ui/qt/widgets/statusbarview.h - shows a ui::StatusBar: its panels side by side, and a grip for
// resizing the window.
#pragma once

#include "ui/controls/statusbar.h"

#include <QSizeGrip>
#include <QWidget>
#include <vector>

namespace ui::qt
{

class ElidedLabel;

class StatusBarView : public QWidget
{
public:
    // `bar` outlives the view. `placed`: the view is at its place; false: a layout of the window
    // decides where it is.
    StatusBarView(ui::StatusBar &bar, QWidget *parent, bool placed = true);

    // The height of a line of text, in pixels.
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void ShowPanels();

    ui::StatusBar &m_bar;
    std::vector<ElidedLabel *> m_labels; // one for each panel, owned by this widget
    QSizeGrip *m_grip;
};

} // namespace ui::qt
