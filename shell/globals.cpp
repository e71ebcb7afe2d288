#include "shell/globals.h"

namespace shell
{

Globals &TheGlobals()
{
    static Globals globals;
    return globals;
}

} // namespace shell
