// search/searchform.h - frmSearch and its pane frmSearchOptions: the search itself, and what
// happens on a change of the size, at the splitter and in the list. frmSearch.h has the widgets
// that only this window has.
#pragma once

#include "search/searchcontrols.h"

#include <cstdint>

namespace search
{

struct SearchForm : SearchControls {
    SearchForm();

    int PaneWidth = kDesignPaneWidth;
    bool separatorDragging = false;      // CheckMaximized.Enabled
    bool separatorReleased = false;      // the mouse was released while a move was being laid out
    std::uint64_t searches = 0;          // the number of searches that have begun
    ui::KeyedList *ObjClicked = nullptr; // the list that was last clicked
};

// The form of the search window; the first call creates it. ForgetSearch ends it: the next call
// creates a new one.
SearchForm &frmSearch();
void ForgetSearch();

// Shows the window as it was, or brings it to the front, with the focus in the text to find.
// Errors: kNonModalOverModal (401) while a modal window is open.
void ShowSearch();

// To be called when the catalogue may have changed: begins to read its texts ahead, as far as
// needed, so that the next search is fast.
void PrepareSearch(SearchForm &form);

// ReDrawForm: does the layout, then yields.
void ReDrawForm(SearchForm &form);

// Form_Resize. Failures are ignored.
void ResizeSearchForm(SearchForm &form);

// Shows or hides the pane with the criteria, and does the layout.
void ShowOptionsPane(SearchForm &form, bool show);

// Shows the pane if it is hidden; the focus is in the text to find, which is selected.
void GoToOptionsPane(SearchForm &form);

// Dragging the splitter: press, move, release. `mouseX`: twips from the left edge of the splitter
// to the mouse; negative at its left.
void Separator_MouseDown(SearchForm &form);
void Separator_MouseMove(SearchForm &form, int mouseX);
void Separator_MouseUp(SearchForm &form);

// cmdAll_Click: 0 unchecks all boxes, 1 checks them.
void cmdAll_Click(SearchForm &form, int index);

// cmdSearch_Click: runs the search and fills the list. Lets events run; a later search or the end
// of the window ends it without a message. A failed statement is reported in a box.
void cmdSearch_Click(SearchForm &form);

// ListView_MouseDown. `button` is 1 for the left and 2 for the right one. The popup opens for the
// selected row, wherever the mouse is. A click with only Ctrl waits until half a second after the
// nearest whole second, with events running.
void ListView_MouseDown(SearchForm &form, int button, bool shift, bool ctrl);

} // namespace search
