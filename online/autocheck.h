// online/autocheck.h - the check for newer versions: on demand from the menu, and unattended at
// each minute until it has an answer. Holds the checks under way.
#pragma once

#include "online/versioninfo.h"
#include "ui/controls/timer.h"

#include <memory>

namespace online
{

// The checks of one run of the program. `tmrAutoCheckVersion` and `tmrClearAutoCheck` are the main
// window's timers; all outlive it.
class VersionChecks
{
public:
    VersionChecks(ui::Timer &tmrAutoCheckVersion, ui::Timer &tmrClearAutoCheck, DriveTimer drive);
    ~VersionChecks();
    VersionChecks(const VersionChecks &) = delete;
    VersionChecks &operator=(const VersionChecks &) = delete;

    // The menu's command: a new check whose result is shown. It keeps its form until the next check
    // replaces it.
    void submnuNewerVersion_Click();

    // The main window's load, before the preferences are read and the catalogue is open: with the
    // stored preference off it disables the timer; on, the first check is at the first tick.
    void AtLoad();

    // The main window's timers. The first run of the check timer's event is the call that the main
    // window's load makes: AtLoad.
    void tmrAutoCheckVersion_Timer();
    void tmrClearAutoCheck_Timer();

    // The handlers of frmVer's events.
    void frmVer_NoNewerVersion();
    void frmVer_NewerVersion();
    void frmVer_CouldNotGetFile() { tmrClearAutoCheck_Timer(); }

    VersionInfoForm *Current() const { return m_frmVer.get(); } // null without a check

private:
    void NewCheck(bool showIt);
    void DropCheck();

    ui::Timer &m_autoCheck;
    ui::Timer &m_clear;
    DriveTimer m_drive;
    bool m_loaded = false;
    std::unique_ptr<VersionInfoForm> m_frmVer;
    std::unique_ptr<VersionInfoForm> m_shared; // the one that a Yes shows
};

} // namespace online
