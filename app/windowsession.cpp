#include "app/windowsession.h"

#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/regeneration.h"
#include "catalogue/rowgroups.h"
#include "platform/appid.h"
#include "platform/machine.h"
#include "platform/session.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "shell/startup/startup.h"
#include "shell/version.h"
#include "ui/qt/bindings.h"

#include <QAbstractEventDispatcher>
#include <QStringList>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace app
{

WindowMachine::WindowMachine()
#ifdef QUENLIN_HAS_WEB
    : m_web("Quenlin/" + shell::VersionText(shell::kProgramVersion, "."))
#endif
{
    platform::Machine &machine = platform::TheMachine();
    machine.desktop = &m_desktop;
    machine.settings = &m_settings;
    m_player = MakePlayer(PlayerName());
    machine.player = m_player.get();
    machine.fileTypes = &m_fileTypes;
    machine.drives = &m_drives;
    machine.folders = &m_folders;
    machine.clock = &m_clock;
    machine.windows = &m_windows;
#ifdef QUENLIN_HAS_WEB
    machine.web = &m_web;
    ui::qt::BindTimer(m_web.poll, &m_turns);
#endif
    catalogue::TheLockWaitCalls().ShowLine = [this](std::string_view line) { ShowWait(line); };
    machine.beginWait = catalogue::CloseOpenGroup;
    // The box must not open inside the call: the failure is reported between two turns of the event
    // loop.
    m_settings.onCannotStore = [this](const std::string &path, int why) {
        QTimer::singleShot(0, &m_turns, [path, why] { shell::ShowSettingsFailure(path, why); });
    };
    // What was stored during one turn of the event loop is written to the file before the next
    // turn.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &m_turns, [this] { m_settings.Flush(); });
}

WindowMachine::~WindowMachine()
{
    catalogue::DataAccess.reset();
    catalogue::CloseCatalogue();
    m_settings.Flush();
    catalogue::TheLockWaitCalls() = {};
    platform::TheMachine() = platform::Machine();
}

// Shows the line in the status bar, which gets its former text back after the wait, and on the
// splash.
void WindowMachine::ShowWait(std::string_view line)
{
    constexpr std::string_view kPanel = "Playing";
    if (!line.empty())
        shell::TheGlobals().lblProgress.SetCaption(line);
    ui::StatusBar *bar = catalogue::TheRegenerationControls().SB;
    if (bar == nullptr)
        return;
    if (!line.empty())
        m_panelBefore = bar->Panel(kPanel).text;
    bar->SetText(kPanel, line.empty() ? std::string_view(m_panelBefore) : line);
}

namespace
{

// The messages of the toolkit while the display was opened.
QStringList &ToolkitMessages()
{
    static QStringList messages;
    return messages;
}

void NoteToolkitMessage(QtMsgType type, const QMessageLogContext & /*where*/, const QString &text)
{
    if (type != QtFatalMsg) {
        ToolkitMessages().append(text);
        return;
    }
    const std::string name = platform::DisplayName();
    std::fprintf(stderr, "quenlin: The display %s cannot be opened.\n",
                 name.empty() ? "of this session" : name.c_str());
    std::_Exit(shell::kRefused);
}

} // namespace

DisplayOpening::DisplayOpening()
{
    ToolkitMessages().clear();
    qInstallMessageHandler(NoteToolkitMessage);
}

DisplayOpening::~DisplayOpening()
{
    qInstallMessageHandler(nullptr);
    for (const QString &line : ToolkitMessages())
        std::fprintf(stderr, "%s\n", qPrintable(line));
    ToolkitMessages().clear();
}

WindowSession::WindowSession(int &argc, char **argv)
    : opening(std::in_place), application(argc, argv)
{
    opening.reset();
    application.showError = shell::ShowRuntimeError;
    QApplication::setApplicationName(QStringLiteral("quenlin"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(platform::kApplicationId));
    QApplication::setQuitOnLastWindowClosed(
        false); // the splash closes before the main window is shown
}

} // namespace app
