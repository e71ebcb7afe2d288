#include "platform/qt/modalwait.h"

#include "platform/machine.h"

#include <QCursor>
#include <QGuiApplication>

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

} // namespace platform::qt
