#include "online/tipform.h"

#include "shell/apppath.h"
#include "shell/settings.h"

namespace online
{

namespace
{

constexpr std::string_view kShowTips = "Show Tips at Startup";
constexpr std::string_view kSection = "TipsOfTheDay";
constexpr std::string_view kNoFile = "... that you can download the tips file from the web site?";

constexpr ui::Caption kCaptions[] = {
    {"chkLoadTipsAtStartup", kSection, "LoadTipsAtStartup", "&Show Tips at Startup"},
    {"cmdOk", kSection, "OkButton", "&Ok"},
    {"cmdNextTip", kSection, "NextTip", "&Next Tip"},
    {"lblDidYouKnow", kSection, "DidYouKnow", "Did you know..."},
    {"", kSection, "TipOfTheDay", "Tip of the day"},
};

constexpr int kWidth = 6600, kHeight = 3600; // twips, the least size

} // namespace

TipForm::TipForm() : Form("frmTip", kCaptions)
{
    Add("lblDidYouKnow", lblDidYouKnow);
    Add("lblTipText", lblTipText);
    Add("chkLoadTipsAtStartup", chkLoadTipsAtStartup);
    Add("cmdNextTip", cmdNextTip);
    Add("cmdOk", cmdOk);
    acceptButton = cancelButton = &cmdOk;
    size = {0, 0, kWidth, kHeight};
    layout = ui::Column({lblDidYouKnow, ui::Filled(lblTipText), chkLoadTipsAtStartup,
                         ui::Row({ui::Room(), cmdNextTip, cmdOk})});

    onLoad = [this] {
        chkLoadTipsAtStartup.SetChecked(shell::GetFlagPreference(kShowTips));
        SeedTips(tips);
        if (LoadTips(tips, shell::AppFile(kTipsFile)))
            DisplayCurrentTip();
        else
            lblTipText.SetCaption(kNoFile);
    };
    // Saved at once: there is no Cancel for it.
    chkLoadTipsAtStartup.onClick = [this] {
        shell::SaveFlagPreference(kShowTips, chkLoadTipsAtStartup.Checked());
    };
    cmdNextTip.onClick = [this] {
        PickTip(tips);
        DisplayCurrentTip();
    };
    cmdOk.onClick = [this] { ui::Close(*this); };
}

void TipForm::DisplayCurrentTip()
{
    if (tips.lines.empty())
        return;
    lblTipText.SetCaption(ui::CaptionOf(CurrentTip(tips)));
}

} // namespace online
