// search/install.h - connects the search with the main window.
#pragma once

namespace search
{

// Registers submnuSearch, which shows the search window. To be called once, before LoadMainForm.
void Install();

} // namespace search
