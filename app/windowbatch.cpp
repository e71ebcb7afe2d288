#include "app/windowbatch.h"

#include "app/programhome.h"
#include "app/windowsession.h"
#include "platform/disk/userfolders.h"
#include "platform/endrequest.h"
#include "platform/process.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/startup/splashform.h"
#include "shell/startup/startup.h"

#include <QGuiApplication>
#include <memory>

namespace app
{

namespace
{

int Batch(const std::vector<std::string> &given, std::unique_ptr<shell::SplashForm> &splash)
{
    std::vector<std::string> paths;
    for (const std::string &path : given)
        paths.push_back(platform::AbsolutePath(path));
    shell::StartUpWindows steps;
    steps.ShowSplash = [&splash] {
        splash = std::make_unique<shell::SplashForm>(nullptr);
        splash->ShowSplash(false);
    };
    return shell::Main(paths, steps).value_or(0);
}

} // namespace

bool CanOpenWindows(int argc, char **argv)
{
    return platform::ReturnsInCopy([&] {
        qunsetenv("SESSION_MANAGER"); // the session manager must not know this process
        auto toolkit = std::make_unique<QGuiApplication>(argc, argv);
        (void)toolkit.release(); // it ends with the copy
    });
}

int RunBatchInWindows(int argc, char **argv, const std::vector<std::string> &paths)
{
    const WindowSession session(argc, argv);
    std::unique_ptr<shell::SplashForm> splash;
    platform::WatchForEndRequest();
    int status = shell::kRefused;
    try {
        PrepareProgramHome();
        status = Batch(paths, splash);
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
    } catch (const platform::EndRequested &end) {
        status = 128 + end.signalNo; // the status that shells use for an end by a signal
    }
    shell::EndSplash(std::move(splash));
    return status;
}

} // namespace app
