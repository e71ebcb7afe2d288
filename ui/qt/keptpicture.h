// ui/qt/keptpicture.h - keeps on the screen what a view shows while its rows change, whatever has
// to be drawn again meanwhile.
#pragma once

#include <QLabel>
#include <QTreeView>

namespace ui::qt
{

class KeptPicture
{
public:
    // `view` outlives the picture and owns its widget.
    explicit KeptPicture(QTreeView &view);

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
