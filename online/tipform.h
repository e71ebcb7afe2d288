// online/tipform.h - frmTip: the tip of the day.
#pragma once

#include "online/tips.h"
#include "ui/controls/form.h"

namespace online
{

struct TipForm : ui::Form {
    TipForm();

    ui::Label lblDidYouKnow, lblTipText;
    ui::CheckBox chkLoadTipsAtStartup;
    ui::Button cmdNextTip, cmdOk;
    Tips tips;

    // Shows the current tip; the text stays as it is when there are no tips.
    void DisplayCurrentTip();
};

} // namespace online
