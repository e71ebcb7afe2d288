// platform/qt/modalwait.h - used around every modal window: what must be done before the program
// waits for the user, and the pointer meanwhile.
#pragma once

class QWidget;

namespace platform::qt
{

// Calls platform::TheMachine().beginWait when it is made. As long as it lives the pointer is the
// normal one, whatever the program set before.
class ModalWait
{
public:
    ModalWait();
    ~ModalWait();
    ModalWait(const ModalWait &) = delete;
    ModalWait &operator=(const ModalWait &) = delete;

private:
    bool m_pointerHidden = false; // an hourglass is covered by an arrow
};

// The window that a box or a modal window belongs to: the modal one that is up, else the one that
// has the keyboard, else, right after another box, the program's main window. Null for none, and in
// place of a window with the property kOwnsNoBox: that one
// is used beside modal windows, and may go before them.
QWidget *OwnerOfBox();
inline constexpr const char *kOwnsNoBox = "ownsNoBox";

} // namespace platform::qt
