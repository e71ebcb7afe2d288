// search/install.h - what the search adds to the main window.
#pragma once

#include <functional>

namespace search
{

// Registers submnuSearch: `showWindow` shows frmSearch, which it makes at the first call. Once,
// before LoadMainForm.
void Install(std::function<void()> showWindow);

} // namespace search
