// platform/qt/modalwait.h - used around every modal window: what must be done before the program
// waits for the user, and the pointer meanwhile.
#pragma once

#include <memory>

namespace platform::qt
{

// As long as one lives the program waits for the user: what platform::TheMachine().beginWait
// returned is kept, and the pointer is the normal one, whatever the program set before.
class ModalWait
{
public:
    ModalWait();
    ~ModalWait();
    ModalWait(const ModalWait &) = delete;
    ModalWait &operator=(const ModalWait &) = delete;

private:
    std::shared_ptr<void> m_wait; // its one owner
    bool m_pointerHidden = false; // an hourglass is covered by an arrow
};

} // namespace platform::qt
