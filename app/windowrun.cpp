#include "app/windowrun.h"

#include "app/programhome.h"
#include "app/singleinstance.h"
#include "app/windowsession.h"
#include "browser/fieldtree.h"
#include "browser/filecommands.h"
#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/form/formload.h"
#include "browser/windows/frmMain.h"
#include "catalogue/regeneration.h"
#include "lyrics/frmLyricsView.h"
#include "lyrics/install.h"
#include "online/frmHistory.h"
#include "online/help/frmHelp.h"
#include "online/help/help.h"
#include "online/install.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "platform/qt/toolkitlanguage.h"
#include "platform/settingsstore.h"
#include "player/controlsform.h"
#include "player/install.h"
#include "player/playmp3.h"
#include "playlists/install.h"
#include "runtime/error.h"
#include "search/frmSearch.h"
#include "search/install.h"
#include "search/searchform.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/preferences/preferences.h"
#include "shell/startup/splashform.h"
#include "shell/startup/startup.h"
#include "shell/version.h"
#include "tagedit/editcommands.h"
#include "ui/qt/bindings.h"
#include "ui/qt/helpkey.h"
#include "ui/qt/icons.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace app
{

namespace
{

constexpr int kEndAgainMs = 50; // between two attempts to end the program

// The windows of one run.
struct Windows {
    std::unique_ptr<browser::frmMainWindow> main;
    std::unique_ptr<shell::SplashForm> splash, about;
    bool ended = false;           // the main window was unloaded
    std::shared_ptr<void> online; // the checks for newer versions
};

// There is one about box: choosing the command again brings it to the front.
void ShowAbout(Windows &windows)
{
    if (windows.about == nullptr)
        windows.about = std::make_unique<shell::SplashForm>(nullptr, online::ShowHistory,
                                                            [] { online::ShowHelp("licences"); });
    windows.about->ShowSplash(true);
}

// Makes the toolkit run a timer while the result exists.
std::shared_ptr<void> DriveTimer(ui::Timer &timer)
{
    auto driver = std::make_shared<QObject>();
    ui::qt::BindTimer(timer, driver.get());
    return driver;
}

// The name of the language whose file is in use; empty for English.
QString LanguageInUse()
{
    const std::filesystem::path file = shell::TheGlobals().LanguageFilePath;
    std::error_code unknown;
    return std::filesystem::is_regular_file(file, unknown)
               ? QString::fromStdString(file.stem().string())
               : QString();
}

void LoadMainWindow(Windows &windows)
{
    browser::MainForm &form = browser::frmMain();
    platform::qt::ChooseToolkitLanguage(LanguageInUse());
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
    search::Install();
    search::RegisterSearchWidgets();
    windows.online = online::Install(DriveTimer);
    online::RegisterHistoryWidget();
    browser::LoadMainForm(form);
#ifdef QUENLIN_TEST_BUILD
    browser::CheckRegistrations(form);
#endif
}

shell::StartUpWindows StepsOf(Windows &windows)
{
    shell::StartUpWindows steps;
    steps.LoadMainWindow = [&windows] { LoadMainWindow(windows); };
    steps.ShowWebStyle = [](bool) { browser::ApplyPreferences(browser::frmMain()); };
    steps.ShowSplash = [&windows] {
        windows.splash =
            std::make_unique<shell::SplashForm>([] { browser::ShowMainForm(browser::frmMain()); });
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

// Ends the program as the command Quit does: in order, and after the current file of a
// regeneration. Called again and again until the program has ended, because open boxes and modal
// windows must close first.
void End(const Windows &windows)
{
    if (windows.ended || windows.main == nullptr)
        return;
    if (QWidget *box = QApplication::activeModalWidget(); box != nullptr) {
        catalogue::StopRegeneration(); // for a window that can be closed only when it has stopped
        box->close();                  // this answers it with No
        return;
    }
    if (windows.main->isVisible()) {
        browser::CloseMainForm(browser::frmMain());
        return;
    }
    // Still starting: nothing is unsaved. Leaving the loop closes no window, so the splash does not
    // show the main window.
    catalogue::StopRegeneration();
    QCoreApplication::exit(0);
}

// The session may be about to end, or may go on: saves what the end of the program would save. If
// it does end, the session manager closes the window.
void SaveForLogout(const Windows &windows)
{
    if (windows.ended || windows.main == nullptr || !windows.main->isVisible())
        return;
    browser::SavePlacement(browser::frmMain());
    lyrics::FlushDrafts();
    platform::TheMachine().settings->Flush();
}

// Ends the program when a signal has asked for it, as soon as the current step allows it.
class EndWatch
{
public:
    explicit EndWatch(Windows &windows)
        : m_signal(platform::EndRequestDescriptor(), QSocketNotifier::Read)
    {
        m_again.setInterval(kEndAgainMs);
        QObject::connect(&m_again, &QTimer::timeout, &m_again, [&windows] { End(windows); });
        QObject::connect(&m_signal, &QSocketNotifier::activated, &m_again, [this, &windows] {
            m_signal.setEnabled(false); // the descriptor stays readable
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

// Runs the program. However it ends, the windows are destroyed before the ports.
int RunFirst(Windows &windows)
{
    int status = shell::kRefused;
    try {
        status = StartAndRun(windows);
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
    }
    shell::EndSplash(std::move(windows.splash));
    shell::EndSplash(std::move(windows.about));
    search::ForgetSearch();
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

int RunInWindows(int argc, char **argv)
{
    WindowSession session(argc, argv);
    Windows windows;
    platform::WatchForEndRequest();
    try {
        PrepareProgramHome();
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
