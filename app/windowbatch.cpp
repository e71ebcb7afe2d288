#include "app/programhome.h"
#include "app/windowrun.h"
#include "app/windowsession.h"
#include "platform/endrequest.h"
#include "platform/posix/userfolders.h"
#include "runtime/error.h"
#include "shell/batch.h"
#include "shell/frmSplash.h"
#include "shell/globals.h"
#include "shell/startup.h"

#include <memory>

namespace app
{

namespace
{

int Batch(const std::vector<std::string> &given, std::unique_ptr<shell::frmSplash> &splash)
{
    std::vector<std::string> paths;
    for (const std::string &path : given)
        paths.push_back(platform::posix::AbsolutePath(path));
    shell::StartUpWindows steps;
    steps.ShowSplash = [&splash] {
        splash = std::make_unique<shell::frmSplash>([] {});
        splash->setAttribute(Qt::WA_DeleteOnClose, false);
        splash->ShowSplash(false);
    };
    return shell::Main(shell::QuoteArguments(paths), steps).value_or(0);
}

} // namespace

int RunBatchInWindows(int argc, char **argv, const std::vector<std::string> &paths)
{
    const WindowSession session(argc, argv);
    std::unique_ptr<shell::frmSplash> splash;
    platform::WatchForEndRequest();
    int status = shell::kRefused;
    try {
        SettleIn();
        status = Batch(paths, splash);
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
    } catch (const platform::EndRequested &end) {
        status = 128 + end.signalNo; // as shells tell the end by a signal
    }
    shell::TheGlobals().lblProgress.captionChanged = nullptr;
    return status;
}

} // namespace app
