// search/install.h - connects the search with the main window.
#pragma once

#include <functional>

namespace search
{

// Registers submnuSearch. `showWindow` shows frmSearch, and makes it at the first call. To be
// called once, before LoadMainForm.
void Install(std::function<void()> showWindow);

} // namespace search
