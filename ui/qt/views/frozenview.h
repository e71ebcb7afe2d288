// ui/qt/views/frozenview.h - shows a view unchanged while its rows change.
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

    // Puts a picture of the view over it; the view itself paints nothing until Drop. To be called
    // while it still has the old rows. Does nothing when the view is not on the screen.
    void Keep();
    void Drop();

private:
    void LetDraw(bool on);

    QTreeView &m_view;
    QLabel *m_cover;
};

} // namespace ui::qt
