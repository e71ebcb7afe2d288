// online/historyform.h - frmHistory: the program's version history in a rich text box, with a
// picture in front of each entry that says what kind of change it was.
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
    ui::Area History; // shows `box`, read-only, its end first
    RichText box;
    ui::Button cmdClose;
};

} // namespace online
