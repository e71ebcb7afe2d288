// search/searchform.h - frmSearch and its pane frmSearchOptions without their widgets: controls,
// fields, the search itself, and what happens on a change of the size, at the splitter and in the
// list. The window connects its widgets with the controls.
#pragma once

#include "browser/panelform.h"
#include "search/criteria.h"
#include "search/layout.h"
#include "ui/controls/button.h"
#include "ui/controls/inputs/checkbox.h"
#include "ui/controls/inputs/combobox.h"
#include "ui/controls/inputs/keyedlist.h"
#include "ui/controls/inputs/textbox.h"
#include "ui/controls/statusbar.h"
#include "ui/controls/timer.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace search
{

// frmSearchOptions: the criteria.
struct SearchOptions {
    ui::Area window; // in pctOptions
    ui::Label lblToFind{"Text to find", {}};
    ui::TextBox txtToFind;
    ui::Label lblTypeOfSearch{"Type of search", {}};
    ui::ComboBox cmbType;
    std::array<ui::CheckBox, kFields.size()> chkField; // in the order of kFields
    std::array<ui::Button, 2> cmdAll;                  // unticks all, ticks all
    ui::Button cmdSearch;
};

struct SearchForm : browser::PanelForm {
    SearchForm();
    SearchForm(const SearchForm &) = delete;
    SearchForm &operator=(const SearchForm &) = delete;

    // --- The window itself; these are updated by it. In twips; see kFrameHeight in layout.h.
    ui::Rect window{0, 0, 11000, 7200};
    int scaleWidth = 11000 - kFrameWidth;
    bool minimised = false;
    bool visible = false;

    // --- Controls.
    ui::Area pctCloseTree{{0, 0, kDesignPaneWidth, 330}};
    ui::Area frmCloseTree{{0, 0, kDesignPaneWidth, 330}};
    ui::Label lblFolders{"Search", {90, 45, 2000, 240}};
    ui::Label lblCloseTree{"\u00D7", {2400, 30, 270, 270}};
    ui::Area pctOptions;
    SearchOptions options;
    ui::Area Separator;
    ui::KeyedList ListView;
    ui::StatusBar SBar{{{"Items", "", 3000}}};
    ui::Area statusBarArea{{0, 0, 11000, 345}};

    ui::Timer tmrReadAhead{10}; // reads the texts of the catalogue ahead while the program is idle

    // --- Fields.
    int PaneWidth = kDesignPaneWidth;
    bool separatorDragging = false;      // CheckMaximized.Enabled
    bool separatorReleased = false;      // the mouse was released while a move was being laid out
    std::uint64_t searches = 0;          // the number of searches that have begun
    ui::KeyedList *ObjClicked = nullptr; // the list that was last clicked

    // What the window does for the form. An empty function does nothing.
    struct Calls {
        std::function<void()> placed; // called when a layout has set the places, to show them
    } calls;
};

// The form of the search window; the first call creates it. ResetSearchForm replaces it by a new
// one.
SearchForm &frmSearch();
void ResetSearchForm();

// Form_Load of the window and of its pane. Reads the language file.
void LoadSearchForm(SearchForm &form);

// The window was shown or hidden. While it is visible, its list is the main form's `searchList`.
void SetVisible(SearchForm &form, bool visible);

// To be called when the catalogue may have changed: begins to read its texts ahead, as far as
// needed, so that the next search is fast.
void PrepareSearch(SearchForm &form);

// ReDrawForm: does the layout, then yields.
void ReDrawForm(SearchForm &form);

// Form_Resize. Failures are ignored.
void ResizeSearchForm(SearchForm &form);

// Shows or hides the pane with the criteria, and does the layout.
void ShowOptionsPane(SearchForm &form, bool show);

// Dragging the splitter: press, move (the place of the mouse inside the splitter, in twips),
// release.
void Separator_MouseDown(SearchForm &form);
void Separator_MouseMove(SearchForm &form, int mouseX);
void Separator_MouseUp(SearchForm &form);

// cmdAll_Click: 0 unticks all boxes, 1 ticks them.
void cmdAll_Click(SearchForm &form, int index);

// cmdSearch_Click: runs the search and fills the list. Lets events run; a later search or the end
// of the window ends it without a message. A failed statement is reported in a box.
void cmdSearch_Click(SearchForm &form);

// ListView_MouseDown. `button` is 1 for the left and 2 for the right one. The popup opens for the
// selected row, wherever the mouse is. A click with only Ctrl waits until half a second after the
// nearest whole second, with events running.
void ListView_MouseDown(SearchForm &form, int button, bool shift, bool ctrl);

} // namespace search
