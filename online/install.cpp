#include "online/install.h"

#include "browser/commands.h"
#include "browser/mainform.h"
#include "online/help/help.h"
#include "online/historyform.h"
#include "online/techsupportform.h"
#include "online/tipform.h"
#include "online/version/autocheck.h"
#include "platform/machine.h"

#include <memory>
#include <utility>

namespace online
{

namespace
{

struct Area {
    explicit Area(const DriveTimer &drive)
        : checks(browser::frmMain().tmrAutoCheckVersion, browser::frmMain().tmrClearAutoCheck,
                 drive)
    {
    }
    ~Area()
    {
        ui::Close(*startTip);
        ui::Retire(std::move(startTip)); // after its window, which is destroyed a little later
    }
    Area(const Area &) = delete;
    Area &operator=(const Area &) = delete;

    VersionChecks checks;
    // Shown without modality when the program starts.
    std::unique_ptr<TipForm> startTip = std::make_unique<TipForm>();
};

// From the menu the tips are shown modally. At the start they are not: the main window can be used
// at once.
void ShowTips(Area &area)
{
    if (browser::frmMain().starting || area.startTip->Visible()) {
        ui::Show(*area.startTip);
        return;
    }
    TipForm form;
    ui::ShowModal(form);
}

} // namespace

std::shared_ptr<void> Install(const DriveTimer &drive)
{
    auto area = std::make_shared<Area>(drive);
    if (platform::TheMachine().web != nullptr)
        browser::RegisterCommand("submnuNewerVersion",
                                 [area = area.get()] { area->checks.submnuNewerVersion_Click(); });
    else // a build without the web
        browser::frmMain().FindMenu("submnuNewerVersion")->SetVisible(false);
    browser::RegisterCommand("submnuShowHelp", [] { ShowHelp(); });
    browser::RegisterCommand("submnuTips", [area = area.get()] { ShowTips(*area); });
    browser::RegisterCommand("submnuTechSupport", [] {
        TechSupportForm form;
        ui::ShowModal(form);
    });
    return area;
}

void ShowHistory()
{
    HistoryForm form;
    ui::ShowModal(form);
}

} // namespace online
