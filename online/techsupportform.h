// online/techsupportform.h - frmTechSupport: where a user can get help.
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
    ui::Button Picture2; // opens the page of the forums
    ui::Button cmdOk;
};

} // namespace online
