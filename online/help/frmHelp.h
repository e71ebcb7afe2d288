// online/help/frmHelp.h - the widget that shows a page of the help. No state.
#pragma once

namespace online
{

// Registers the widget of HelpForm's Page.
void RegisterHelpWidget();

} // namespace online
