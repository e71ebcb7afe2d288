// app/windowsession.h - what every run with windows needs: the toolkit's application object, the
// look, and the ports of a desktop. They are in use while it exists; its destructor ends them in
// order.
#pragma once

#include "app/playerport.h"
#include "platform/disk/userfolders.h"
#include "platform/posix/desktopfiletypes.h"
#include "platform/posix/disk/mountdrives.h"
#include "platform/posix/disk/systemfolders.h"
#include "platform/posix/inisettings.h"
#include "platform/posix/systemclock.h"
#include "platform/qt/application.h"
#include "platform/qt/qtdesktop.h"
#include "platform/qt/qtwindows.h"
#include "platform/qt/theme.h"
#include "ui/qt/form.h"
#ifdef QUENLIN_HAS_WEB
#include "platform/web/curlweb.h"
#endif

#include <optional>
#include <string>
#include <string_view>

namespace app
{

// While one exists, the ports of a desktop are in use.
class WindowMachine
{
public:
    WindowMachine();
    ~WindowMachine(); // closes the catalogue, stores the settings

    WindowMachine(const WindowMachine &) = delete;
    WindowMachine &operator=(const WindowMachine &) = delete;

private:
    void ShowWait(std::string_view line);

    platform::qt::QtDesktop m_desktop;
    platform::posix::IniSettings m_settings{platform::ConfigHome()};
    platform::posix::DesktopFileTypes m_fileTypes{platform::DataHome()};
    platform::posix::MountDrives m_drives;
    platform::posix::SystemFolders m_folders;
    platform::posix::SystemClock m_clock;
    platform::qt::QtWindows m_windows;
    ui::qt::FormWindows m_forms;
    std::unique_ptr<platform::Player> m_player;
#ifdef QUENLIN_HAS_WEB
    platform::web::CurlWeb m_web;
#endif
    QObject m_turns;
    std::string m_panelBefore; // the text of the status bar before a wait
};

// While one exists, a display that cannot be opened ends the program with one sentence and status
// 1; the toolkit would write several lines and abort. Warnings of the toolkit are printed at the
// end.
class DisplayOpening
{
public:
    DisplayOpening();
    ~DisplayOpening();
    DisplayOpening(const DisplayOpening &) = delete;
    DisplayOpening &operator=(const DisplayOpening &) = delete;
};

// The members are in the order in which they are made; the ports are destroyed before the
// application object.
struct WindowSession {
    // `argc` and `argv` are those of main and outlive the session.
    WindowSession(int &argc, char **argv);

    std::optional<DisplayOpening> opening; // until the application is there
    platform::qt::Application application;
    platform::qt::Theme theme;
    WindowMachine machine;
};

} // namespace app
