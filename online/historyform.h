// online/historyform.h - frmHistory: the version history of the program in a rich text box. A
// picture before each entry shows what kind of change it was.
#pragma once

#include "online/history.h"
#include "ui/controls/form.h"

#include <array>

namespace online
{

struct HistoryForm : ui::Form {
    HistoryForm();

    std::array<ui::Picture, 4> imgReference; // the legend's pictures
    std::array<ui::Label, 4> lblReference;
    ui::Area History; // shows `box`, read-only, scrolled to its end
    RichText box;
    ui::Button cmdClose;
};

} // namespace online
