#include "platform/qt/modalwait.h"

#include "platform/waiting.h"

#include <QApplication>
#include <QCursor>
#include <QVariant>
#include <QWidget>

namespace platform::qt
{

namespace
{

struct State {
    Pointer wanted = Pointer::Normal; // what the program has set
    Pointer shown = Pointer::Normal;
    int waits = 0;
};

State &TheState()
{
    static State state;
    return state;
}

void ShowPointer()
{
    State &state = TheState();
    const Pointer pointer = state.waits == 0 ? state.wanted : Pointer::Normal;
    if (pointer == state.shown)
        return;
    if (state.shown != Pointer::Normal)
        QGuiApplication::restoreOverrideCursor();
    state.shown = pointer;
    if (pointer != Pointer::Normal)
        QGuiApplication::setOverrideCursor(pointer == Pointer::Hourglass ? Qt::WaitCursor
                                                                         : Qt::BusyCursor);
}

} // namespace

ModalWait::ModalWait()
{
    BeginWait();
    ++TheState().waits;
    ShowPointer();
}

ModalWait::~ModalWait()
{
    --TheState().waits;
    ShowPointer();
}

void SetProgramPointer(Pointer pointer)
{
    TheState().wanted = pointer;
    ShowPointer();
}

QWidget *OwnerOfBox()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    const auto owns = [](const QWidget *window) { return !window->property(kOwnsNoBox).toBool(); };
    if (QWidget *active = QApplication::activeWindow())
        return owns(active) ? active : nullptr;
    // Right after a box was closed no window is active until the window system activates one.
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Window && owns(window))
            return window;
    return nullptr;
}

} // namespace platform::qt
