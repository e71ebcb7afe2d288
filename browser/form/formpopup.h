// browser/form/formpopup.h - the popup menu of the files in a list of the main window or of the
// search window.
#pragma once

#include "browser/mainform.h"

#include <string_view>
#include <vector>

namespace browser
{

// Builds `cp` from the table of the popup, in the user's language.
void BuildPopup(MainForm &form);

// Opens the popup for the selected row of `list`, if it is a file's; its commands use this list.
void OpenPopup(MainForm &form, const ui::KeyedList &list);

// A press of a mouse button in the list: `button` 2 is the right one, which opens the popup; `hit`
// is the row under the mouse or kNoRow.
void LV_MouseDown(MainForm &form, int button, ui::RowId hit);

// Shows the popup at the mouse.
void ShowPop(MainForm &form);

// A click on the popup's entry with this key. Does nothing when its command cannot run.
void ClickPopup(MainForm &form, std::string_view key);

// Sets the height of the strip to that of all entries (`entryHeights` in pixels) and paints it
// again.
void LogoDraw(MainForm &form, const std::vector<int> &entryHeights);

} // namespace browser
