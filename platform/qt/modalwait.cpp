#include "platform/qt/modalwait.h"

#include "platform/machine.h"

namespace platform::qt
{

ModalWait::ModalWait()
{
    if (TheMachine().beforeWait)
        TheMachine().beforeWait();
}

} // namespace platform::qt
