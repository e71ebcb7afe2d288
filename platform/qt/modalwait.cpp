#include "platform/qt/modalwait.h"

#include "platform/machine.h"

#include <QApplication>
#include <QCursor>

namespace platform::qt
{

ModalWait::ModalWait()
{
    if (TheMachine().beginWait)
        m_wait = TheMachine().beginWait();
    if (QGuiApplication::overrideCursor() != nullptr) {
        QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        m_pointerHidden = true;
    }
}

ModalWait::~ModalWait()
{
    if (m_pointerHidden)
        QGuiApplication::restoreOverrideCursor();
}

QWidget *OwnerOfBox()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    QWidget *active = QApplication::activeWindow();
    return active != nullptr && active->property(kOwnsNoBox).toBool() ? nullptr : active;
}

} // namespace platform::qt
