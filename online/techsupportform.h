// online/techsupportform.h - frmTechSupport: where help is to be had.
#pragma once

#include "ui/controls/form.h"

namespace online
{

struct TechSupportForm : ui::Form {
    TechSupportForm();

    ui::Label lblTechSupport;
    ui::Frame frmContactInfo, frmTutorials, frmForums;
    ui::Label lblContactAuthor, lblByEmail, lblICQ;
    ui::Button lblEmail, lblVisitTutorials, lblVisitForums; // clickable texts
    ui::Picture Picture1;
    ui::Button Picture2; // leads to the forums
    ui::Button cmdOk;
};

} // namespace online
