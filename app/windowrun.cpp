#include "app/windowrun.h"

#include "app/programhome.h"
#include "app/singleinstance.h"
#include "app/windowsession.h"
#include "browser/fieldtree.h"
#include "browser/filecommands.h"
#include "browser/frmMain.h"
#include "catalogue/regeneration.h"
#include "lyrics/frmLyricsView.h"
#include "lyrics/install.h"
#include "online/frmHelp.h"
#include "online/frmHistory.h"
#include "online/help.h"
#include "online/install.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "platform/settingsstore.h"
#include "player/controlsform.h"
#include "player/install.h"
#include "player/playmp3.h"
#include "playlists/install.h"
#include "runtime/error.h"
#include "search/frmSearch.h"
#include "search/install.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/preferences/preferences.h"
#include "shell/startup/frmSplash.h"
#include "shell/startup/startup.h"
#include "shell/version.h"
#include "tagedit/editcommands.h"
#include "ui/qt/bindings.h"
#include "ui/qt/helpkey.h"
#include "ui/qt/icons.h"

#include <QApplication>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>

namespace app
{

namespace
{

constexpr int kEndAgainMs = 50; // until a step that cannot end now is asked again

// The windows of one run.
struct Windows {
    std::unique_ptr<browser::frmMainWindow> main;
    std::unique_ptr<search::frmSearchWindow> search; // once it was asked for
    QPointer<shell::frmSplash> splash, about;        // each deletes itself
    bool ended = false;                              // the main form was unloaded
    std::shared_ptr<void> online;                    // checks for newer versions
};

// The about box is one window: choosing it again brings the open one to the front.
void ShowAbout(Windows &windows)
{
    if (windows.about == nullptr)
        windows.about =
            new shell::frmSplash({}, online::ShowHistory, [] { online::ShowHelp("licences"); });
    windows.about->ShowSplash(true);
}

// The search window stays loaded: choosing it again shows it as it was.
void ShowSearch(Windows &windows)
{
    if (windows.search == nullptr) {
        search::LoadSearchForm(search::frmSearch());
        windows.search = std::make_unique<search::frmSearchWindow>(search::frmSearch());
    }
    windows.search->Present();
}

// Lets the toolkit drive a timer of logic for as long as the result lives.
std::shared_ptr<void> DriveTimer(ui::Timer &timer)
{
    auto driver = std::make_shared<QObject>();
    ui::qt::BindTimer(timer, driver.get());
    return driver;
}

void LoadMainWindow(Windows &windows)
{
    browser::MainForm &form = browser::frmMain();
    windows.main = std::make_unique<browser::frmMainWindow>(form);
    player::Install();
    browser::RegisterCommand("submnuAbout", [&windows] { ShowAbout(windows); });
    browser::InstallFileCommands();
    tagedit::Install();
    shell::InstallPreferences();
    lyrics::Install();
    lyrics::RegisterLyricsView();
    form.calls.unloadForms = [] {
        for (QWidget *window : QApplication::topLevelWidgets())
            window->hide();
    };
    form.calls.endProgram = [&windows] {
        windows.ended = true;
        player::EndPlaying();
        QApplication::quit();
    };
    playlists::Install();
    search::Install([&windows] { ShowSearch(windows); });
    windows.online = online::Install(DriveTimer);
    online::RegisterHistoryWidget();
    browser::LoadMainForm(form);
}

shell::StartUpWindows StepsOf(Windows &windows)
{
    shell::StartUpWindows steps;
    steps.LoadMainWindow = [&windows] { LoadMainWindow(windows); };
    steps.ShowWebStyle = [](bool) { browser::ApplyPreferences(browser::frmMain()); };
    steps.ShowSplash = [&windows] {
        windows.splash = new shell::frmSplash([] { browser::ShowMainForm(browser::frmMain()); });
        windows.splash->ShowSplash(false);
    };
    steps.ListRefresh = [](bool showProgress) { catalogue::ListRefresh(showProgress); };
    steps.SizeMainWindow = [] { browser::ShowTreeAndList(browser::frmMain()); };
    steps.BuildLanguageMenu = [](const std::vector<std::string> &captions) {
        browser::BuildLanguageMenu(browser::frmMain(), captions);
    };
    steps.LoadShellIcons = [] {
        ui::qt::AddDesktopIcon(".mp3");
        ui::qt::AddDesktopIcon(".m3u");
    };
    steps.LoadTreeView = [](std::string_view field) {
        browser::LoadTreeView(browser::frmMain(), field);
    };
    steps.ArmSplashTimer = [&windows] {
        if (windows.splash != nullptr)
            windows.splash->CloseIt.SetEnabled(true);
    };
    return steps;
}

// Ends the program as the user's Quit does: in order, after a running walk's current file. It is
// asked again until the end has come: what waits for an answer has to come to its own end first.
void End(const Windows &windows)
{
    if (windows.ended || windows.main == nullptr)
        return;
    if (QWidget *box = QApplication::activeModalWidget(); box != nullptr) {
        catalogue::StopRegeneration(); // of a window that lets itself be closed after it
        box->close();                  // which answers it with No
        return;
    }
    if (windows.main->isVisible()) {
        browser::CloseMainForm(browser::frmMain());
        return;
    }
    // Still starting, nothing is unsaved. Leaving the loop closes no window, so that the splash
    // does not bring the main window up.
    catalogue::StopRegeneration();
    QCoreApplication::exit(0);
}

// The session is about to end, and may yet go on: what the end would save is saved now. When it
// does end, the session manager closes the window.
void SaveForLogout(const Windows &windows)
{
    if (windows.ended || windows.main == nullptr || !windows.main->isVisible())
        return;
    browser::SavePlacement(browser::frmMain());
    lyrics::FlushDrafts();
    platform::TheMachine().settings->Flush();
}

// Ends the program when a signal asked for it, as soon as the step under way lets it.
class EndWatch
{
public:
    explicit EndWatch(Windows &windows)
        : m_signal(platform::EndRequestDescriptor(), QSocketNotifier::Read)
    {
        m_again.setInterval(kEndAgainMs);
        QObject::connect(&m_again, &QTimer::timeout, &m_again, [&windows] { End(windows); });
        QObject::connect(&m_signal, &QSocketNotifier::activated, &m_again, [this, &windows] {
            m_signal.setEnabled(false); // it stays readable
            m_again.start();
            End(windows);
        });
    }

private:
    QSocketNotifier m_signal;
    QTimer m_again;
};

int StartAndRun(Windows &windows)
{
    const std::optional<int> status = shell::Main({}, StepsOf(windows));
    if (status || windows.ended)
        return status.value_or(0);
    return QApplication::exec();
}

// Runs the program; whatever way it ends, the windows are gone before the ports.
int RunFirst(Windows &windows)
{
    int status = shell::kRefused;
    try {
        status = StartAndRun(windows);
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
    }
    delete windows.splash.data();
    delete windows.about.data();
    windows.search.reset();
    search::ResetSearchForm();
    lyrics::ForgetForms();
    player::ForgetControls();
    online::ForgetHelp();
    windows.online.reset();
    windows.main.reset();
    browser::ResetMainForm();
    return status;
}

void ComeForward(const Windows &windows)
{
    if (windows.main == nullptr || !windows.main->isVisible())
        return;
    if (windows.main->isMinimized())
        windows.main->showNormal();
    windows.main->raise();
    windows.main->activateWindow();
}

} // namespace

bool HasDisplay()
{
    for (const char *name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        if (const char *value = std::getenv(name); value != nullptr && *value != '\0')
            return true;
    return false;
}

int RunInWindows(int argc, char **argv)
{
    WindowSession session(argc, argv);
    Windows windows;
    platform::WatchForEndRequest();
    try {
        SettleIn();
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
        return shell::kRefused;
    }
    SingleInstance instance(shell::GetAppPath());
    if (!instance.IsFirst()) {
        instance.CallFirst();
        return 0;
    }
    instance.onCalled = [&windows] { ComeForward(windows); };
    const EndWatch endWatch(windows);
    online::RegisterHelpWidget();
    const ui::qt::HelpKey helpKey(online::ShowHelpOf);
    QObject::connect(&session.application, &QGuiApplication::commitDataRequest,
                     &session.application, [&windows] { SaveForLogout(windows); });
    return RunFirst(windows);
}

} // namespace app
