#include "app/modulehooks.h"
#include "app/options.h"
#include "app/terminalrun.h"
#ifdef QUENLIN_HAS_WINDOWS
#include "app/windowlibrary.h"
#endif

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace
{

constexpr int kWrongUsage = 2; // exit status for a wrong command line

// Opens /dev/null for each standard stream that is closed. Otherwise the next file that is opened
// would get its number, and messages would be written into that file.
void OpenStandardStreams()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(fd, F_GETFD) < 0)
            open("/dev/null", fd == STDIN_FILENO ? O_RDONLY : O_WRONLY);
}

#ifdef QUENLIN_HAS_WINDOWS
// Whether a user may be reading the messages or typing answers.
bool HasTerminal()
{
    return isatty(STDIN_FILENO) != 0 || isatty(STDERR_FILENO) != 0;
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
    OpenStandardStreams();
    std::signal(SIGPIPE, SIG_IGN); // a reader that has ended must not stop a job in the middle
    std::signal(
        SIGXFSZ,
        SIG_IGN); // writing beyond the limit of a file's size fails, and is reported as an error
    // A regeneration allocates many small blocks and some large ones. The C library keeps lists of
    // the smallest free blocks and merges these at each large one; without these lists allocation
    // takes a third less time.
    mallopt(M_MXFAST, 0);
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
        if (app::HasDisplay()) {
            const app::WindowCalls *windows = app::LoadWindows();
            return windows != nullptr ? windows->RunInWindows(argc, argv) : 1;
        }
#endif
        return Print(app::UsageText(), stderr, kWrongUsage);
    case app::Job::Batch:
#ifdef QUENLIN_HAS_WINDOWS
        if (app::HasDisplay() && !HasTerminal() && !options.unicodeTags) {
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
