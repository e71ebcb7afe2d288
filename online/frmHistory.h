// online/frmHistory.h - the widget of the history window's rich text box.
#pragma once

namespace online
{

// Registers the widget. To be called once, before the window is shown.
void RegisterHistoryWidget();

} // namespace online
