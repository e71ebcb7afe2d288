#include "browser/exportfiles.h"
#include "browser/fieldtree.h"
#include "browser/form/formhandlers.h"
#include "browser/itemlist.h"
#include "browser/liststate.h"
#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/preferences/unicodeoffer.h"
#include "shell/settings.h"
#include "ui/controls/form.h"

namespace browser
{

namespace
{

constexpr std::string_view kMaximised = "Maximised"; // key in section "Windows Size"

std::unique_ptr<MainForm> &TheForm()
{
    static std::unique_ptr<MainForm> form;
    return form;
}

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
    shell::TheStatusLine() = [&form](std::string_view words) { form.SB.SetText("Playing", words); };
}

void CheckCalls(const MainFormCalls &calls)
{
    const bool complete = calls.textWidth && calls.placed && calls.bringIntoView &&
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

void ReleaseRegeneration()
{
    catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
    controls = {nullptr, nullptr, {}, {}, {}, controls.EmailBugReport, {}, {}, {}};
    shell::TheStatusLine() = nullptr;
}

} // namespace

MainForm::MainForm()
    : caption(shell::kApplicationTitle), SB({{"Playing", "", kPlayingPanelWidth},
                                             {"PlayingStatus", "", kPlayingStatusPanelWidth},
                                             {"Blank", "", 1000},
                                             {"About", "Quenlin by Orvald Tamsin", 2000}})
{
    for (const MenuLine &line : MenuLines()) {
        ui::Command &entry = menu.emplace_back(line.name, line.caption);
        entry.SetEnabled(line.enabled);
        entry.SetChecked(line.checked);
    }
    for (const ToolButton &button : ToolButtons())
        if (!button.key.empty())
            buttons.emplace_back(button.key, button.tooltip);
    TV.pathSeparator = runtime::PathSeparator;
    TV.SetPlace({0, kDesignAddressHeight - 60 + 540 + 100, kDefaultTVWidth, 4000});
    LV.SetPlace({2735, -45, 6000, 4000});
}

ui::Command *MainForm::FindMenu(std::string_view name)
{
    for (ui::Command &entry : menu)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

ui::Command *MainForm::FindButton(std::string_view name)
{
    for (ui::Command &button : buttons)
        if (button.name == name)
            return &button;
    return nullptr;
}

MainForm &frmMain()
{
    if (TheForm() == nullptr)
        TheForm() = std::make_unique<MainForm>();
    return *TheForm();
}

void ResetMainForm()
{
    ReleaseRegeneration();
    TheForm().reset();
    ForgetRegistrations();
}

ui::KeyedList &PopupList(MainForm &form)
{
    return form.PopupFromSearch && form.searchList != nullptr ? *form.searchList : form.LV;
}

void LoadMainForm(MainForm &form)
{
    CheckCalls(form.calls);
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

void CloseMainForm(MainForm &form)
{
    if (!ui::AskToCloseAll())
        return;
    if (catalogue::IsRegenerating()) {
        form.closePending = true;
        catalogue::StopRegeneration();
        return;
    }
    if (form.exporting) {
        form.closePending = true;
        StopExport(form);
        return;
    }
    UnloadMainForm(form);
}

void SavePlacement(const MainForm &form)
{
    shell::SaveNumberPreference("Initial TV Width", shell::TheGlobals().InitialTVWidth);
    const ui::Rect &place = form.maximised ? form.normal : form.window;
    shell::SaveNumberPreference("Width", place.width);
    shell::SaveNumberPreference("Height", place.height);
    shell::SaveNumberPreference("Top", place.top);
    shell::SaveNumberPreference("Left", place.left);
    shell::SaveSetting(shell::kWindowsSize, kMaximised, form.maximised ? "1" : "0");
}

void UnloadMainForm(MainForm &form)
{
    UnhookList(form);
    SavePlacement(form);
    form.logo.reset();
    form.cp.clear();
    ReleaseRegeneration();
    catalogue::DataAccess.reset();
    form.calls.unloadForms();
    form.calls.endProgram();
}

void HookList(MainForm &form)
{
    form.listHooked = true;
}

void UnhookList(MainForm &form)
{
    form.listHooked = false;
}

void ListMessage(MainForm &form, int message)
{
    constexpr int kMouseWheel = 0x20A, kVerticalScroll = 0x115;
    if (form.listHooked && (message == kMouseWheel || message == kVerticalScroll))
        form.calls.raisePanel();
}

} // namespace browser
