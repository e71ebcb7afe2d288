#include "online/version/autocheck.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/settings.h"

#include <utility>

namespace online
{

VersionChecks::VersionChecks(ui::Timer &tmrAutoCheckVersion, ui::Timer &tmrClearAutoCheck,
                             DriveTimer drive)
    : m_autoCheck(tmrAutoCheckVersion), m_clear(tmrClearAutoCheck), m_drive(std::move(drive))
{
    m_autoCheck.event = [this] {
        if (std::exchange(m_loaded, true))
            tmrAutoCheckVersion_Timer();
        else
            AtLoad();
    };
    m_clear.event = [this] { tmrClearAutoCheck_Timer(); };
}

VersionChecks::~VersionChecks()
{
    m_autoCheck.event = nullptr;
    m_clear.event = nullptr;
}

void VersionChecks::NewCheck(bool showIt)
{
    DropCheck();
    m_frmVer = std::make_unique<VersionInfoForm>(m_drive);
    m_frmVer->NoNewerVersion = [this] { frmVer_NoNewerVersion(); };
    m_frmVer->NewerVersion = [this] { frmVer_NewerVersion(); };
    m_frmVer->ShowIt = showIt;
    m_frmVer->CheckAppsVersions();
}

// Unloads frmVer and destroys it later: this may be running inside one of its events.
void VersionChecks::DropCheck()
{
    if (m_frmVer == nullptr)
        return;
    m_frmVer->NoNewerVersion = nullptr;
    m_frmVer->NewerVersion = nullptr;
    ui::Close(*m_frmVer);
    ui::Retire(std::move(m_frmVer));
}

void VersionChecks::submnuNewerVersion_Click()
{
    NewCheck(true);
}

void VersionChecks::AtLoad()
{
    if (!shell::GetFlagPreference("AutoCheckNewerVersion"))
        m_autoCheck.SetEnabled(false);
}

void VersionChecks::tmrAutoCheckVersion_Timer()
{
    if (!shell::TheGlobals().AutoCheckNewerVersion) {
        m_autoCheck.SetEnabled(false);
        return;
    }
    if (m_frmVer != nullptr && m_frmVer->Visible())
        return; // the user is looking at it
    NewCheck(false);
    m_clear.SetEnabled(true);
}

void VersionChecks::tmrClearAutoCheck_Timer()
{
    m_clear.SetEnabled(false);
    DropCheck();
}

void VersionChecks::frmVer_NoNewerVersion()
{
    m_autoCheck.SetEnabled(false);
    m_clear.SetEnabled(false);
    DropCheck();
}

void VersionChecks::frmVer_NewerVersion()
{
    m_autoCheck.SetEnabled(false);
    m_clear.SetEnabled(false);
    const std::string question = shell::WithLineBreaks(shell::GetLanguageText(
        "There's a new version available.%0ADo you want to see more information about it?",
        "NewerVersionAvailableWannaSeeInfo", "Messages"));
    if (platform::TheMachine().desktop->MessageBox(question, platform::Buttons::YesNo,
                                                   "Newer version") == platform::Answer::Yes) {
        if (m_shared == nullptr)
            m_shared = std::make_unique<VersionInfoForm>(m_drive);
        m_shared->ShowIt = true;
        m_shared->CheckAppsVersions();
    }
    DropCheck();
}

} // namespace online
