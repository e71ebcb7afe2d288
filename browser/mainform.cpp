#include "browser/mainform.h"

#include "catalogue/regeneration.h"
#include "runtime/paths.h"
#include "shell/globals.h"
#include "shell/openaddress.h"

namespace browser
{

namespace
{

std::unique_ptr<MainForm> &TheForm()
{
    static std::unique_ptr<MainForm> form;
    return form;
}

} // namespace

MainForm::MainForm()
    : caption(shell::kApplicationTitle), SB({{"Playing", "", kPlayingPanelWidth},
                                             {"PlayingStatus", "", kPlayingStatusPanelWidth},
                                             {"Blank", "", 1000},
                                             {"About", "Quenlin by Orvald Tamsin", 2000}},
                                            {0, 0, 12000, 345})
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

void ReleaseRegeneration()
{
    catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
    controls = {nullptr, nullptr, {}, {}, {}, controls.EmailBugReport, {}, {}, {}};
    shell::TheStatusLine() = nullptr;
}

void StopExport(MainForm &form)
{
    form.exportStopped = form.exporting;
}

} // namespace browser
