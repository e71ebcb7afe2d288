#include "app/windowbatch.h"

#include "app/programhome.h"
#include "app/windowsession.h"
#include "platform/disk/userfolders.h"
#include "platform/endrequest.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/startup/splashform.h"
#include "shell/startup/startup.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QGuiApplication>
#include <cerrno>
#include <cstdlib>
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

// Ends the process: with 0 when the toolkit could start. If it cannot, no message and no core file
// is written.
[[noreturn]] void TryToolkit(int argc, char **argv)
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    unsetenv("SESSION_MANAGER"); // the session manager must not know this process
    const QGuiApplication toolkit(argc, argv);
    _exit(0);
}

} // namespace

bool CanOpenWindows(int argc, char **argv)
{
    const pid_t child = fork();
    if (child == 0)
        TryToolkit(argc, argv);
    int status = -1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
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
