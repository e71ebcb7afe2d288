#include "platform/qt/modalwait.h"

#include "platform/machine.h"

#include <QApplication>
#include <QCursor>
#include <QVariant>
#include <QWidget>

namespace platform::qt
{

ModalWait::ModalWait()
{
    if (TheMachine().beginWait)
        TheMachine().beginWait();
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
    const auto owns = [](const QWidget *window) { return !window->property(kOwnsNoBox).toBool(); };
    if (QWidget *active = QApplication::activeWindow())
        return owns(active) ? active : nullptr;
    // A box that has just gone leaves no window in use until the window system says which one is.
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Window && owns(window))
            return window;
    return nullptr;
}

} // namespace platform::qt
