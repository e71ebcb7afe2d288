#include "app/modulehooks.h"
#include "app/options.h"
#include "app/terminalrun.h"
#ifdef QUENLIN_HAS_WINDOWS
#include "app/windowlibrary.h"
#endif
#include "platform/process.h"
#include "platform/session.h"

#include <cstdio>

namespace
{

constexpr int kWrongUsage = 2; // exit status for a wrong command line

#ifdef QUENLIN_HAS_WINDOWS
// Whether a user may be reading the messages or typing answers.
bool HasTerminal()
{
    using platform::Stream;
    return platform::IsTerminal(Stream::Input) || platform::IsTerminal(Stream::Errors);
}
#endif

int Print(std::string_view text, std::FILE *stream, int status)
{
    std::fwrite(text.data(), 1, text.size(), stream);
    return std::fflush(stream) == 0 ? status : 1;
}

} // namespace

int main(int argc, char **argv)
{
    platform::PrepareProcess();
    app::ConnectModules();
    const auto options =
        app::ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc));
    switch (options.job) {
    case app::Job::Help:
        return Print(app::UsageText(), stdout, 0);
    case app::Job::Version:
        return Print(app::VersionText(), stdout, 0);
    case app::Job::Mistake:
        return Print("quenlin: " + options.mistake + "\n" + std::string(app::UsageText()), stderr,
                     kWrongUsage);
    case app::Job::Window:
#ifdef QUENLIN_HAS_WINDOWS
        if (platform::HasDisplay()) {
            const app::WindowCalls *windows = app::LoadWindows();
            return windows != nullptr ? windows->RunInWindows(argc, argv) : 1;
        }
#endif
        return Print(app::UsageText(), stderr, kWrongUsage);
    case app::Job::Batch:
#ifdef QUENLIN_HAS_WINDOWS
        if (platform::HasDisplay() && !HasTerminal() && !options.unicodeTags) {
            const app::WindowCalls *windows = app::LoadWindows();
            if (windows != nullptr && windows->CanOpenWindows(argc, argv))
                return windows->RunBatchInWindows(argc, argv, options.paths);
        }
#endif
        return app::RunInTerminal(options);
    case app::Job::Regenerate:
    case app::Job::Setting:
        return app::RunInTerminal(options);
    }
}
