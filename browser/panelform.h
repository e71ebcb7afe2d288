// browser/panelform.h - the information panel's controls, which the main window and the search
// window have alike, and what the panel's routines need of the window around it.
#pragma once

#include "ui/controls/keyedlist.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/scrollbar.h"
#include "ui/controls/timer.h"

#include <array>
#include <functional>

namespace browser
{

// Places are within `pctWeb`; that of `pctWeb` and `vsbBack` within `pctBorders`; those of
// `ImgIcon` and `ImgOthers` within `pctWebLine`, which has the rule at its top and room for the
// icons below, so that both follow a folder name that wraps. The labels grow with their text: the
// window sets their `measureHeight`. Stacking order: `ImgIcon`, `ImgOthers[0]`, `ImgOthers[1]`.
struct PanelForm {
    ui::Area pctBorders;
    ui::Area pctWeb{{0, 0, 2775, 3000}};
    ui::Label lblWebFolder{"Search Results", {120, 120, 2515, 360}};
    ui::Area pctWebLine{{0, 480, 2775, 750}};
    ui::Picture ImgIcon{{120, 210, 480, 480}};
    std::array<ui::Picture, 2> ImgOthers{ui::Picture{{220, 160, 480, 480}, false},
                                         ui::Picture{{320, 110, 480, 480}, false}};
    ui::Label WebItemName{"Item Name", {120, 1260, 2515, 255}}; // bold
    ui::Label WebItemType{"Item Type", {120, 1515, 2515, 255}};
    ui::Label WebToolTip{"Tooltip", {120, 1770, 2515, 255}, false};
    ui::Label lblInfo{"lblInfo", {120, 2025, 2515, 255}};
    ui::ScrollBar vsbBack{ui::Rect{2775, 0, 255, 3000}, false};

    // Debounces the selection; its Enabled is also read as the sign of a new selection.
    ui::Timer ShowSelectedItems{150};

    bool WebStyleOn = true;

    std::function<void()> ReDrawForm; // the window's own layout
    std::function<void()> focusList;  // gives the keyboard to the list
};

} // namespace browser
