// search/searchcontrols.h - the controls of frmSearch and of its pane frmSearchOptions: their
// names, captions, heights and the order of the Tab key. What they do: searchform.h.
#pragma once

#include "browser/panelform.h"
#include "search/criteria.h"
#include "search/layout.h"
#include "ui/controls/form.h"

#include <array>

namespace search
{

// frmSearchOptions: the criteria.
struct SearchOptions {
    ui::Frame window; // in pctOptions
    ui::Label lblToFind;
    ui::TextBox txtToFind;
    ui::Label lblTypeOfSearch;
    ui::ComboBox cmbType;
    std::array<ui::CheckBox, kFields.size()> chkField; // in the order of kFields
    std::array<ui::Button, 2> cmdAll;                  // unchecks all, checks all
    ui::Button cmdSearch;
};

struct SearchControls : ui::Form, browser::PanelForm {
    SearchControls();

    // --- Controls, besides those of the panel.
    ui::Frame pctCloseTree{"", {0, 0, kDesignPaneWidth, 330}};
    ui::Frame frmCloseTree{"", {0, 0, kDesignPaneWidth, 330}};
    ui::Label lblFolders{"", {90, 45, 2000, 240}};
    ui::Button lblCloseTree{"\u00D7", {2400, 30, 270, 270}};
    ui::Frame pctOptions;
    SearchOptions options;
    ui::Splitter Separator;
    ui::KeyedList ListView;
    ui::StatusBar SBar{{{"Items", "", 3000}}, {0, 0, 11000, 345}};

    ui::Timer tmrReadAhead{10}; // reads the texts of the catalogue ahead while the program is idle
};

// Form_Load of the pane: the texts that are in no table of captions.
void LoadOptions(SearchOptions &options);

} // namespace search
