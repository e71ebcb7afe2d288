#include "online/techsupportform.h"

#include "browser/commands.h"
#include "shell/globals.h"
#include "shell/openaddress.h"

namespace online
{

namespace
{

constexpr std::string_view kSection = "TechSupport";

constexpr int kPictureSize = 360;            // twips
constexpr int kWidth = 7200, kHeight = 4500; // twips, the least size

constexpr ui::Caption kCaptions[] = {
    {"", kSection, "TechnicalSupport", "Technical Support"},
    {"lblTechSupport", kSection, "TechnicalSupport", "Technical Support"},
    {"frmContactInfo", kSection, "ContactInfo", "Contact Info"},
    {"frmTutorials", kSection, "OnlineTutorials", "Online Tutorials"},
    {"frmForums", kSection, "OnlineForums", "Online Forums"},
    {"lblVisitTutorials", kSection, "VisitTheOnlineTutorials", "Visit the online tutorials"},
    {"lblVisitForums", kSection, "VisitTheOnlineForumsToPostYourQuestions",
     "Visit the online forums to post your questions."},
    {"Picture1", kSection, "OnlineTutorials", "Online Tutorials", ui::Caption::Of::ToolTip},
    {"Picture2", kSection, "OnlineForums", "Online Forums", ui::Caption::Of::SpokenName},
    {"lblContactAuthor", kSection, "YouCanContactTheAuthorOfThisProgram",
     "You can contact the author of this program"},
    {"lblByEmail", kSection, "EitherByEmailAt", "either by email at:"},
    {"lblICQ", kSection, "OrByICQ", "or by ICQ:"},
    {"cmdOk", kSection, "OkButton", "&Ok"},
};

} // namespace

TechSupportForm::TechSupportForm() : Form("frmTechSupport", kCaptions)
{
    Add("lblTechSupport", lblTechSupport);
    Add("frmContactInfo", frmContactInfo);
    Add("lblContactAuthor", lblContactAuthor, {.in = &frmContactInfo});
    Add("lblByEmail", lblByEmail, {.in = &frmContactInfo});
    Add("lblEmail", lblEmail, {.in = &frmContactInfo});
    Add("lblICQ", lblICQ, {.in = &frmContactInfo});
    Add("frmTutorials", frmTutorials);
    Add("Picture1", Picture1, {.in = &frmTutorials});
    Add("lblVisitTutorials", lblVisitTutorials, {.in = &frmTutorials});
    Add("frmForums", frmForums);
    Add("Picture2", Picture2, {.in = &frmForums});
    Add("lblVisitForums", lblVisitForums, {.in = &frmForums});
    Add("cmdOk", cmdOk);
    acceptButton = cancelButton = &cmdOk;
    size = {0, 0, kWidth, kHeight};
    resizable = true;
    lblByEmail.align = ui::Label::Align::Middle; // beside the link, which is higher
    lblEmail.isLink = lblVisitTutorials.isLink = lblVisitForums.isLink = true;
    lblEmail.SetCaption(shell::kSupportAddress);
    lblICQ.SetVisible(!shell::kContactNumber.empty()); // the line says nothing without a number
    layout =
        ui::Column({lblTechSupport,
                    ui::Inside(frmContactInfo,
                               ui::Column({lblContactAuthor,
                                           ui::Row({lblByEmail, lblEmail, ui::Room()}), lblICQ})),
                    ui::Inside(frmTutorials, ui::Row({Picture1, lblVisitTutorials, ui::Room()})),
                    ui::Inside(frmForums, ui::Row({Picture2, lblVisitForums, ui::Room()})),
                    ui::Row({ui::Room(), cmdOk})});

    lblVisitTutorials.onClick = [] { browser::RunHandler("submnuTutorials"); };
    Picture1.SetPlace({0, 0, kPictureSize, kPictureSize});
    Picture1.SetImage("Tutorial");
    Picture2.SetImage("Forum");
    lblVisitForums.onClick = [] { browser::RunHandler("submnuForums"); };
    Picture2.onClick = lblVisitForums.onClick;
    lblEmail.onClick = [this] { shell::OpenAddress("mailto:" + lblEmail.Caption(), "C:\\"); };
    cmdOk.onClick = [this] { ui::Close(*this); };
}

} // namespace online
