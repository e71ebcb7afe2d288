#include "browser/form/formload.h"

#include "browser/fieldtree.h"
#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/form/formlayout.h"
#include "browser/form/formpopup.h"
#include "browser/itemlist.h"
#include "browser/liststate.h"
#include "browser/webpanel.h"
#include "catalogue/regeneration.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/preferences/unicodeoffer.h"
#include "shell/settings.h"

namespace browser
{

namespace
{

// The name without an index: "submnuLng" for "submnuLng(2)".
std::string_view ControlName(std::string_view name)
{
    return name.substr(0, name.find('('));
}

// The tool tip of a button: the caption of its menu entry without marks and shortcut.
std::string TooltipOf(std::string_view caption)
{
    std::string tooltip = runtime::Replace(caption, "&", "");
    tooltip.resize(std::min(tooltip.find("Alt+"), tooltip.size()));
    return std::string(runtime::Trim(tooltip));
}

void TranslateMenus(MainForm &form)
{
    for (ui::Command &entry : form.menu) {
        const std::string_view name = ControlName(entry.name);
        if (name.starts_with("submnu")) {
            entry.SetCaption(
                shell::GetLanguageText(entry.Caption(), name.substr(6), "OptionMenus"));
            if (ui::Command *button = form.FindButton(entry.name); button != nullptr)
                button->SetCaption(TooltipOf(entry.Caption()));
        } else if (name.starts_with("mnu")) {
            entry.SetCaption(shell::GetLanguageText(entry.Caption(), name.substr(3), "Menus"));
        }
    }
}

void BuildExtras(MainForm &form)
{
    if (shell::GetSetting("Extras", "Menu", "1") == "0")
        return;
    for (const MenuLine &line : ExtraMenuLines()) {
        const bool isMenu = line.parent.empty();
        form.menu.emplace_back(line.name, shell::GetLanguageText(line.caption,
                                                                 line.name.substr(isMenu ? 3 : 6),
                                                                 isMenu ? "Menus" : "OptionMenus"));
    }
    if (form.extrasBuilt)
        form.extrasBuilt();
}

void BuildStrip(MainForm &form)
{
    form.logo = std::make_unique<ui::cLogo>();
    form.logo->widthTwips = form.picSideBar.Width();
    form.logo->heightTwips = form.picSideBar.Height();
    form.logo->SetStartColor(0);
    form.logo->SetEndColor(0xFF0000); // blue
    form.logo->Caption = shell::kApplicationTitle;
    form.logo->hasImageList = true;
    form.logo->IconIndex = 4;
    form.logo->Draw();
}

void BindControls(MainForm &form)
{
    BindTreeEvents(form);
    BindListEvents(form);
    BindPanelEvents(form.LV, form);
    DoubleAmpersands(form.WEPath);
    form.lblAddress.captionChanged = [&form] {
        form.lblAddress.SetWidth(form.calls.textWidth(form.lblAddress.Caption()));
        form.WEPath.SetLeft(form.lblAddress.Place().Right() + 200);
    };
    form.ReDrawForm = [&form] { ReDrawForm(form); };
    form.Separator.pressed = [&form] { Separator_MouseDown(form); };
    form.Separator.moved = [&form](double mouseX) { Separator_MouseMove(form, mouseX); };
    form.Separator.released = [&form] { Separator_MouseUp(form); };
    shell::TheStatusLine() = [&form](std::string_view words) { form.SB.SetText("Playing", words); };
}

void CheckCalls(const MainForm &form)
{
    const MainFormCalls &calls = form.calls;
    const bool complete = form.placed && calls.textWidth && calls.bringIntoView &&
                          calls.showWindow && calls.showPopup && calls.cursor &&
                          calls.popupHeights && calls.raisePanel && calls.unloadForms &&
                          calls.endProgram;
    if (!complete)
        throw runtime::RuntimeError(runtime::kObjectNotSet);
}

void BindRegeneration(MainForm &form)
{
    form.shownRun =
        catalogue::LastRegeneration().number; // runs before this are not shown by this form
    catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
    controls.SB = &form.SB;
    controls.PBar = &form.PBar;
    controls.LayPBarOverPanel = [&form] { ShowProgressBar(form); };
    controls.EnableTVAndLV = [&form](bool enabled) {
        form.TV.SetEnabled(enabled);
        form.LV.SetEnabled(enabled);
    };
    controls.EmptyLV = [&form] { form.LV.ClearRows(); };
    controls.OfferUnicodeTags = shell::OfferUnicodeTags;
    controls.Progress = [&form](std::string_view, std::int64_t value, std::int64_t maximum) {
        ShowReading(form, value, maximum);
    };
}

} // namespace

void LoadMainForm(MainForm &form)
{
    CheckCalls(form);
    BindControls(form);
    RegisterOwnCommands(form);
    BindRegeneration(form);
    if (form.tmrAutoCheckVersion.event)
        form.tmrAutoCheckVersion.event();
    form.ImgIcon.SetImage("");
    LoadOtherImages(false, form);
    form.lblWebFolder.SetCaption("");
    form.WebToolTip.SetCaption("");
    ShowSelectedItemInfo(form.LV, form);
    form.ShowSelectedItems.SetEnabled(true);
    TranslateMenus(form);
    BuildExtras(form);
    UpdateCommands(form);
    BuildStrip(form);
    BuildPopup(form);
    form.lblAddress.SetCaption(shell::GetLanguageText("Address", "AddressBar", "ControlsCaptions"));
    SetFileCommandsEnabled(form, false);
    HookList(form);
}

void ApplyPreferences(MainForm &form)
{
    form.WebStyleOn = shell::TheGlobals().WebStyle;
    form.FindMenu("submnuWebStyle")->SetChecked(form.WebStyleOn);
    form.WEPath.SetCaption("");
}

void ShowTreeAndList(MainForm &form)
{
    form.TV.SetVisible(true);
    form.LV.SetVisible(true);
    form.TBAddress.SetEnabled(true);
    form.window.width = form.LV.Place().Right() + 200;
    form.window.height = form.TV.Place().Bottom() + 500;
}

void ShowMainForm(MainForm &form)
{
    const bool tips = shell::GetFlagPreference("Show Tips at Startup");
    form.ImgIcon.SetImage("MP3");
    LoadOtherImages(true, form);
    form.lblWebFolder.SetCaption(shell::kApplicationTitle);
    form.window = {shell::GetNumberPreference("Left"), shell::GetNumberPreference("Top"),
                   shell::GetNumberPreference("Width"), shell::GetNumberPreference("Height")};
    form.window = form.calls.bringIntoView(form.window);
    form.normal = form.window;
    form.maximised = shell::GetSetting(shell::kWindowsSize, kMaximised) == "1";
    form.scaleWidth = form.window.width - kFrameWidth;
    form.tmr_Playing.SetEnabled(true);
    form.visible = true;
    form.calls.showWindow();
    if (tips && CanRun("submnuTips"))
        RunHandler("submnuTips");
    ReDrawForm(form);
    form.starting = false;
}

} // namespace browser
