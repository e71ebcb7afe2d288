#include "search/install.h"

#include "browser/commands.h"
#include "search/searchform.h"

namespace search
{

void Install()
{
    browser::RegisterCommand("submnuSearch", ShowSearch);
}

} // namespace search
