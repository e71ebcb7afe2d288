#include "shell/startup/splashform.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/version.h"

#include <utility>

namespace shell
{

namespace
{

constexpr ui::Caption kCaptions[] = {
    {"lblProgrammed", "Splash", "ProgrammedBy", "Programmed by"},
    {"lblMail", "Splash", "Email", "E-mail:"},
    {"lblICQ", "Splash", "ICQ", "ICQ:"},
    {"cmdLicences", "Splash", "LicencesButton", "&Licences"},
    {"cmdHistory", "Splash", "HistoryButton", "&History"},
    {"cmdOk", "Splash", "OkButton", "&Ok"},
};

// Lengths in twips.
constexpr int kPictureHeight = 3750; // the picture is as wide as the window
constexpr int kMargin = 210;         // around what is below it
constexpr int kTranslationWidth = 3150;
constexpr int kTranslationGap = 60; // above and below the credits

} // namespace

SplashForm::SplashForm(std::function<void()> showMainForm, std::function<void()> showHistory,
                       std::function<void()> showLicences)
    : Form("frmSplash", kCaptions), m_showMainForm(std::move(showMainForm))
{
    SetTitle(kApplicationTitle);
    imgLogo.SetImage("splash");
    LabVers.SetCaption(
        VersionCaption(kProgramVersion.major, kProgramVersion.minor, kProgramVersion.patch));
    Label2.SetCaption(ui::CaptionOf(kAuthor));
    lblEmail.SetCaption(kSupportAddress);
    Label5.SetCaption(kContactNumber);
    AddMembers();
    Arrange();
    cmdLicences.SetEnabled(showLicences != nullptr);
    cmdLicences.onClick = std::move(showLicences);
    cmdHistory.SetEnabled(showHistory != nullptr);
    cmdHistory.onClick = std::move(showHistory);
    lblEmail.onClick = [] { OpenAddress(SupportMailAddress(), "C:\\"); };
    cmdOk.onClick = [this] { ui::Close(*this); };
    CloseIt.event = [this] { ui::Close(*this); };
    onLoad = [this] { Load(); };
    mayClose = [this] { return escapeCloses || CloseIt.Enabled(); };
    onUnload = [this] {
        CloseIt.SetEnabled(false);
        UnloadSplash(m_height, std::exchange(m_showMainForm, nullptr));
    };
    acceptButton = &cmdOk;
    firstFocus = &cmdOk;
    centred = true;
}

void SplashForm::AddMembers()
{
    Add("imgLogo", imgLogo);
    Add("LabVers(0)", LabVers);
    Add("lblProgress", TheGlobals().lblProgress);
    Add("frmTranslation", frmTranslation);
    Add("lblTranslatedBy", lblTranslatedBy, {.in = &frmTranslation});
    Add("lblTranslator", lblTranslator, {.in = &frmTranslation});
    Add("About", About);
    Add("lblProgrammed", lblProgrammed, {.in = &About});
    Add("Label2", Label2, {.in = &About});
    Add("lblMail", lblMail, {.in = &About});
    Add("lblEmail", lblEmail, {.in = &About});
    Add("lblICQ", lblICQ, {.in = &About});
    Add("Label5", Label5, {.in = &About});
    Add("cmdLicences", cmdLicences, {.in = &About});
    Add("cmdHistory", cmdHistory, {.in = &About});
    Add("cmdOk", cmdOk, {.in = &About});
    Add("CloseIt", CloseIt);
}

void SplashForm::Arrange()
{
    imgLogo.SetPlace({0, 0, kSplashWidth, kPictureHeight});
    LabVers.SetPlace({kSplashWidth - kMargin - 3000, kPictureHeight - 450, 3000, 300});
    LabVers.align = ui::Label::Align::TopRight;
    LabVers.onDark = true;
    LabVers.oneLine = true;
    ui::Label &progress = TheGlobals().lblProgress;
    progress.align = ui::Label::Align::Middle;
    progress.paintsAtOnce = true;

    About.bordered = false;
    About.SetPlace({kMargin, kPictureHeight + kMargin / 2, kSplashWidth - 2 * kMargin,
                    kAboutHeight - kPictureHeight - kMargin - kMargin / 2});
    for (ui::Label *label : {&lblProgrammed, &Label2, &lblMail, &lblICQ, &Label5})
        label->oneLine = true;
    lblMail.align = ui::Label::Align::Middle; // as the link beside it
    lblEmail.isLink = true;
    lblICQ.SetVisible(!kContactNumber.empty());
    Label5.SetVisible(!kContactNumber.empty());

    frmTranslation.SetPlace({kSplashWidth - kMargin - kTranslationWidth,
                             kPictureHeight + kTranslationGap, kTranslationWidth,
                             kSplashHeight - kPictureHeight - 2 * kTranslationGap});
    lblTranslatedBy.elided = lblTranslator.elided = true;

    // Each line is only as wide as its words: the credits are beside them.
    insides.push_back(ui::Inside(
        About,
        ui::Column({ui::Row({lblProgrammed, Label2, ui::Room()}),
                    ui::Row({lblMail, lblEmail, ui::Room()}), ui::Row({lblICQ, Label5, ui::Room()}),
                    ui::Room(), ui::Row({ui::Room(), cmdLicences, cmdHistory, cmdOk})})));
    insides.push_back(
        ui::Inside(frmTranslation, ui::Tight(ui::Column({lblTranslatedBy, lblTranslator}))));
}

// The credits are shown in both roles.
void SplashForm::Load()
{
    frmTranslation.SetCaption(GetLanguageText("", "Title", "TranslationInfo"));
    lblTranslatedBy.SetCaption(
        ui::CaptionOf(GetLanguageText("", "TranslatedBy", "TranslationInfo")));
    lblTranslator.SetCaption(ui::CaptionOf(GetLanguageText("", "Translator", "TranslationInfo")));
    const bool credited = !lblTranslator.Caption().empty() || !lblTranslatedBy.Caption().empty();
    frmTranslation.SetVisible(credited);
    const int right = credited ? frmTranslation.Left() : kSplashWidth;
    TheGlobals().lblProgress.SetPlace(
        {kMargin, kPictureHeight, right - 2 * kMargin, kSplashHeight - kPictureHeight});
}

void SplashForm::SetRole(bool about)
{
    m_height = about ? kAboutHeight : kSplashHeight;
    size = {0, 0, kSplashWidth, m_height};
    framed = about;
    escapeCloses = about;
    About.SetVisible(about);
    TheGlobals().lblProgress.SetVisible(!about);
}

void SplashForm::ShowSplash(bool about)
{
    SetRole(about);
    ui::Show(*this);
    if (!about)
        platform::TheMachine().desktop->DoEvents();
}

void EndSplash(std::unique_ptr<SplashForm> splash)
{
    if (splash == nullptr)
        return;
    splash->onUnload = nullptr;
    ui::Close(*splash);
    ui::Retire(std::move(splash));
}

std::string VersionCaption(int major, int minor, int revision)
{
    return "Ver.:" + std::to_string(major) + "." + std::to_string(minor) + "." +
           std::to_string(revision);
}

std::string SupportMailAddress()
{
    return "mailto:" + std::string(kSupportAddress);
}

void UnloadSplash(int height, const std::function<void()> &showMainForm)
{
    if (height == kSplashHeight && showMainForm)
        showMainForm();
}

} // namespace shell
