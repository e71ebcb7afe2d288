// browser/webpanel.h - the information panel beside a list, in the main and the search window.
#pragma once

#include "browser/layout.h"
#include "browser/panelform.h"

namespace browser
{

// The places of the panel, of the list beside it and of the scroll bar, for a layout.
PanelPlaces PlacesOf(const PanelForm &form, const ui::KeyedList &list);

// Moves them to the places that a layout has computed; a panel whose top is 0 shows its beginning
// again.
void SetPlaces(PanelForm &form, ui::KeyedList &list, const PanelPlaces &places);

// Shows the selected row of the list in the panel; empties it when there is none, or while the
// timer is enabled.
void ShowSelectedItemInfo(ui::KeyedList &list, PanelForm &form);

// The event of the timer ShowSelectedItems: shows the fields of one row, or the number and names of
// several.
void ShowSelectionSummary(ui::KeyedList &list, PanelForm &form);

// Shows or hides the text labels, empties all three, and does the window's layout.
void SetPanelTextVisible(bool show, PanelForm &form);

// Adapts pctWeb and vsbBack to the text, if the panel is shown.
void AdjustPanelScroll(ui::KeyedList &list, PanelForm &form);

// Empties the panel of the search window; `clicked`: a list was clicked there.
void ClearSearchPanel(ui::KeyedList &list, PanelForm &form, bool clicked);
void ResetInfoLabelTop(); // forgets the first top of lblInfo in ClearSearchPanel; for tests

// Shows or hides the pile of icons: two copies of ImgIcon's picture behind it.
void LoadOtherImages(bool show, PanelForm &form);

// Sets the handlers of the captions in which "&" is doubled (lblWebFolder also moves the line below
// it), of the scroll bar and of the timer.
void BindPanelEvents(ui::KeyedList &list, PanelForm &form);

// Doubles each "&" in the label's caption, each time that it changes.
void DoubleAmpersands(ui::Label &label);

} // namespace browser
