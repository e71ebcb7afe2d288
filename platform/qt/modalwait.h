// platform/qt/modalwait.h - used around every modal window, box and file dialog: what must be done
// before the program waits for the user, and the pointer meanwhile.
// State: the pointer that the program has set, and how many of them are open.
#pragma once

#include "platform/desktop.h"

class QWidget;

namespace platform::qt
{

// Calls platform::BeginWait when it is made. As long as one exists, the pointer is the normal one,
// whatever the program has set.
class ModalWait
{
public:
    ModalWait();
    ~ModalWait();
    ModalWait(const ModalWait &) = delete;
    ModalWait &operator=(const ModalWait &) = delete;
};

// Sets the pointer of the whole program. It is shown as soon as no ModalWait exists. Setting the
// same pointer again changes nothing, so one Normal ends any number of Hourglass.
void SetProgramPointer(Pointer pointer);

// The window that a box or a modal window belongs to: the modal window that is open, else the
// window with the keyboard, else, right after another box, the program's main window. Null when
// there is none, and when that window has the property kOwnsNoBox: such a window is used beside
// modal windows and may be closed before them.
QWidget *OwnerOfBox();
inline constexpr const char *kOwnsNoBox = "ownsNoBox";

} // namespace platform::qt
