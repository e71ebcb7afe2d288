#include "ui/qt/views/frozenview.h"

#include <QHeaderView>

namespace ui::qt
{

FrozenView::FrozenView(QTreeView &view) : m_view(view), m_cover(new QLabel(&view))
{
    m_cover->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_cover->setAttribute(Qt::WA_OpaquePaintEvent);
    m_cover->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_cover->hide();
}

void FrozenView::Keep()
{
    if (m_view.isVisible()) {
        m_cover->setPixmap(m_view.grab());
        m_cover->setGeometry(m_view.rect());
        m_cover->raise();
        m_cover->show();
    }
    LetDraw(false);
}

void FrozenView::Drop()
{
    LetDraw(true);
    m_cover->hide();
    m_cover->clear();
}

void FrozenView::LetDraw(bool on)
{
    m_view.viewport()->setUpdatesEnabled(on);
    m_view.header()->setUpdatesEnabled(on);
}

} // namespace ui::qt
