#include "platform/machine.h"

namespace platform
{

Machine &TheMachine()
{
    static Machine machine;
    return machine;
}

} // namespace platform
