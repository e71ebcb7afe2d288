#include "app/windowsession.h"

#include "catalogue/adoclass.h"
#include "platform/appid.h"
#include "platform/machine.h"
#include "shell/startup/startup.h"

#include <QAbstractEventDispatcher>

namespace app
{

WindowMachine::WindowMachine()
{
    platform::Machine &machine = platform::TheMachine();
    machine.desktop = &m_desktop;
    machine.settings = &m_settings;
    machine.fileTypes = &m_fileTypes;
    machine.drives = &m_drives;
    machine.clock = &m_clock;
    machine.windows = &m_windows;
    // What one turn of the event loop stored goes to the file before the next one is waited
    // for.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &m_turns, [this] { m_settings.Flush(); });
}

WindowMachine::~WindowMachine()
{
    catalogue::DataAccess.reset();
    catalogue::CloseCatalogue();
    m_settings.Flush();
    platform::TheMachine() = platform::Machine();
}

WindowSession::WindowSession(int &argc, char **argv) : application(argc, argv)
{
    application.tellError = shell::ShowRuntimeError;
    QApplication::setApplicationName(QStringLiteral("quenlin"));
    QApplication::setApplicationDisplayName(QStringLiteral("Quenlin"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(platform::kApplicationId));
    QApplication::setQuitOnLastWindowClosed(false); // the splash closes before the window shows
}

} // namespace app
