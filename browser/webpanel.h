// browser/webpanel.h - the information panel beside a list, in the main and the search window.
#pragma once

#include "browser/panelform.h"

namespace browser
{

// The panel for the list's selected row; empty without one, or while the timer is enabled.
void ShowSelectedItemInfo(ui::KeyedList &list, PanelForm &form);

// Handler of the timer ShowSelectedItems: one row's fields, or the count and names of several.
void ShowSelectionSummary(ui::KeyedList &list, PanelForm &form);

// Shows or hides the text labels, empties all three, and lays the window out.
void SetPanelTextVisible(bool show, PanelForm &form);

// Fits pctWeb and vsbBack to the text, if the panel is on.
void AdjustPanelScroll(ui::KeyedList &list, PanelForm &form);

// Resets the panel of the search window; `clicked` says whether a list was clicked there.
void ClearSearchPanel(ui::KeyedList &list, PanelForm &form, bool clicked);
void ResetInfoLabelTop(); // the first top of lblInfo that ClearSearchPanel saw; for tests

// The pile of icons: two copies of ImgIcon's picture, drawn below it.
void LoadOtherImages(bool show, PanelForm &form);

// Binds the captions that double their "&" (lblWebFolder, whose rule follows it), the scroll bar
// and the timer.
void BindPanelEvents(ui::KeyedList &list, PanelForm &form);

// Doubles every "&" of the label's caption on each change of it.
void DoubleAmpersands(ui::Label &label);

} // namespace browser
