// ui/qt/frozenview.h - shows a view as it was while its rows change, whatever has to be drawn
// again meanwhile.
#pragma once

#include <QLabel>
#include <QTreeView>

namespace ui::qt
{

class FrozenView
{
public:
    // `view` outlives this object and owns its widget.
    explicit FrozenView(QTreeView &view);

    // Lays the picture of the view over it; the view itself draws nothing until Drop. To be called
    // while the old rows are still there. Does nothing for a view that is not on the screen.
    void Keep();
    void Drop();

private:
    void LetDraw(bool on);

    QTreeView &m_view;
    QLabel *m_cover;
};

} // namespace ui::qt
