// platform/qt/modalwait.h - what must be done before the program waits for the user, in one place.
#pragma once

namespace platform::qt
{

// As long as one lives the program waits for the user. Its construction runs
// platform::TheMachine().beforeWait (an open group of catalogue rows is closed there), so that
// nothing is locked meanwhile.
class ModalWait
{
public:
    ModalWait();
    ModalWait(const ModalWait &) = delete;
    ModalWait &operator=(const ModalWait &) = delete;
};

} // namespace platform::qt
