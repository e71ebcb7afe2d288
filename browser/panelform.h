// browser/panelform.h - the controls of the information panel, which are the same in the main
// window and the search window, and what the panel's procedures need of the window.
#pragma once

#include "ui/controls/inputs/keyedlist.h"
#include "ui/controls/inputs/scrollbar.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/timer.h"

#include <array>
#include <functional>

namespace browser
{

// Places are relative to `pctWeb`; those of `pctWeb` and `vsbBack` to `pctBorders`; those of
// `ImgIcon` and `ImgOthers` to `pctWebLine`, which has the line at its top and room for the icons
// below, so that both move down when the folder's name takes more lines. The labels grow with their
// text: the window sets their `measureHeight`. In front is `ImgIcon`, then `ImgOthers[0]`, then
// `ImgOthers[1]`.
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

    // Waits until the selection does not change any more; while it is enabled, the selection is
    // new.
    ui::Timer ShowSelectedItems{150};

    bool WebStyleOn = true;

    std::function<void()> ReDrawForm; // the layout of the window

    // --- For the widgets.
    std::function<void()> focusList; // gives the focus to the list
    std::function<void()> placed;    // a layout has set the places
};

} // namespace browser
