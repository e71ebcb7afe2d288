// online/version/autocheck.h - the check for newer versions: from the menu, and automatically once
// a minute until there is a result. Owns the checks that are running.
#pragma once

#include "online/version/versioninfo.h"
#include "ui/controls/timer.h"

#include <memory>

namespace online
{

// All version checks of one run of the program. `tmrAutoCheckVersion` and `tmrClearAutoCheck` are
// timers of the main window and outlive it.
class VersionChecks
{
public:
    VersionChecks(ui::Timer &tmrAutoCheckVersion, ui::Timer &tmrClearAutoCheck, DriveTimer drive);
    ~VersionChecks();
    VersionChecks(const VersionChecks &) = delete;
    VersionChecks &operator=(const VersionChecks &) = delete;

    // The command of the menu: starts a check whose result is shown. Its form exists until the next
    // check begins.
    void submnuNewerVersion_Click();

    // To be called when the main window loads, before the preferences are read and the catalogue is
    // opened. Disables the timer when the stored preference is off; otherwise the first check
    // begins with the first tick.
    void AtLoad();

    // The events of the two timers.
    void tmrAutoCheckVersion_Timer();
    void tmrClearAutoCheck_Timer();

    // The handlers of frmVer's events.
    void frmVer_NoNewerVersion();
    void frmVer_NewerVersion();
    void frmVer_CouldNotGetFile() { tmrClearAutoCheck_Timer(); }

    VersionInfoForm *Current() const { return m_frmVer.get(); } // null when there is no check

private:
    void NewCheck(bool showIt);
    void DropCheck();

    ui::Timer &m_autoCheck;
    ui::Timer &m_clear;
    DriveTimer m_drive;
    bool m_loaded = false;
    std::unique_ptr<VersionInfoForm> m_frmVer;
    std::unique_ptr<VersionInfoForm> m_shared; // shown when the user answers Yes
};

} // namespace online
