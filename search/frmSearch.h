// search/frmSearch.h - the widgets that only the search window has: the panel and the list with
// their menus.
#pragma once

namespace search
{

// To be called before the search window is shown for the first time.
void RegisterSearchWidgets();

} // namespace search
