// search/searchform.h - frmSearch and its pane frmSearchOptions without their window: controls and
// fields, the search itself, and what size changes, splitter and list do. The window binds its
// widgets to the controls.
#pragma once

#include "browser/panelform.h"
#include "search/criteria.h"
#include "search/layout.h"
#include "ui/controls/button.h"
#include "ui/controls/checkbox.h"
#include "ui/controls/combobox.h"
#include "ui/controls/keyedlist.h"
#include "ui/controls/statusbar.h"
#include "ui/controls/textbox.h"
#include "ui/controls/timer.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace search
{

// frmSearchOptions: the criteria.
struct SearchOptions {
    ui::Area window; // within pctOptions
    ui::Label lblToFind{"Text to find", {}};
    ui::TextBox txtToFind;
    ui::Label lblTypeOfSearch{"Type of search", {}};
    ui::ComboBox cmbType;
    std::array<ui::CheckBox, kFields.size()> chkField; // in the order of kFields
    std::array<ui::Button, 2> cmdAll;                  // clears, ticks
    ui::Button cmdSearch;
};

struct SearchForm : browser::PanelForm {
    SearchForm();
    SearchForm(const SearchForm &) = delete;
    SearchForm &operator=(const SearchForm &) = delete;

    // --- The window itself, kept up to date by it. Twips; see kFrameHeight in layout.h.
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

    ui::Timer tmrReadAhead{10}; // reads the catalogue's texts ahead while nothing else is to do

    // --- Fields.
    int PaneWidth = kDesignPaneWidth;
    bool separatorDragging = false;      // CheckMaximized.Enabled
    bool separatorReleased = false;      // a release came while a move was laying out
    std::uint64_t searches = 0;          // begun so far
    ui::KeyedList *ObjClicked = nullptr; // the list last clicked

    // What the window does for the form. An empty one does nothing.
    struct Calls {
        std::function<void()> placed; // a layout has set the places: show them
    } calls;
};

// The one search window's form; created by the first touch, put back to a fresh one by
// ResetSearchForm.
SearchForm &frmSearch();
void ResetSearchForm();

// Form_Load of the window and of its pane. Reads the language file.
void LoadSearchForm(SearchForm &form);

// The window was shown or hidden. While it shows, its list is the main form's `searchList`.
void SetVisible(SearchForm &form, bool visible);

// The catalogue may have changed: its texts are read ahead, as far as that is still to do, so that
// the next search is fast.
void PrepareSearch(SearchForm &form);

// ReDrawForm: the layout, then a yield.
void ReDrawForm(SearchForm &form);

// Form_Resize. Its failures are passed over.
void ResizeSearchForm(SearchForm &form);

// Shows or hides the pane with the criteria, and lays out.
void ShowOptionsPane(SearchForm &form, bool show);

// A drag of the splitter: press, move (mouse position within the splitter, twips), release.
void Separator_MouseDown(SearchForm &form);
void Separator_MouseMove(SearchForm &form, int mouseX);
void Separator_MouseUp(SearchForm &form);

// cmdAll_Click: 0 clears all boxes, 1 ticks them.
void cmdAll_Click(SearchForm &form, int index);

// cmdSearch_Click: runs the search and fills the list. Lets events run: a newer search, or the end
// of the window, ends it quietly. A refused statement is told in a box.
void cmdSearch_Click(SearchForm &form);

// ListView_MouseDown. `button` is 1 for the left and 2 for the right one. No hit test: the popup
// opens for the selected row. A click with Ctrl alone is held until half a second after the whole
// second that is nearest to it, with events running.
void ListView_MouseDown(SearchForm &form, int button, bool shift, bool ctrl);

} // namespace search
