#include "search/install.h"

#include "browser/commands.h"

#include <utility>

namespace search
{

void Install(std::function<void()> showWindow)
{
    browser::RegisterCommand("submnuSearch", std::move(showWindow));
}

} // namespace search
