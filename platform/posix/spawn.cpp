#include "platform/spawn.h"

#include "runtime/utf8.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <string_view>

namespace platform
{

namespace
{

bool CanRun(const std::string &path)
{
    struct stat status {
    };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::vector<char *> ArgumentsFor(const std::vector<std::string> &arguments)
{
    std::vector<char *> pointers;
    for (const std::string &argument : arguments)
        pointers.push_back(const_cast<char *>(argument.c_str())); // exec does not write to them
    pointers.push_back(nullptr);
    return pointers;
}

bool IsFolder(const std::string &path)
{
    struct stat status {
    };
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// How programs are started: none of our files open, no input, signals handled in the default way.
class SpawnSetting
{
public:
    // `workingFolder`: the program starts there if it is a folder, else in the current one.
    // `ownSession`: signals of our terminal do not reach it.
    SpawnSetting(const std::string &workingFolder, bool ownSession)
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
        if (!workingFolder.empty() && access(workingFolder.c_str(), X_OK) == 0 &&
            IsFolder(workingFolder))
            posix_spawn_file_actions_addchdir_np(&actions, workingFolder.c_str());
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signalNo : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ})
            sigaddset(&signals, signalNo);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        const int flags = POSIX_SPAWN_SETSIGDEF | (ownSession ? POSIX_SPAWN_SETSID : 0);
        posix_spawnattr_setflags(&attributes, static_cast<short>(flags));
    }
    ~SpawnSetting()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSetting(const SpawnSetting &) = delete;
    SpawnSetting &operator=(const SpawnSetting &) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

// The children that nobody waits for. Those that have ended are removed from the process table when
// the next one is started.
std::vector<pid_t> &DetachedChildren()
{
    static std::vector<pid_t> children;
    return children;
}

// Starts the program at `path`. Returns: its process number; 0 when that failed.
pid_t Start(const std::string &path, const std::vector<std::string> &arguments,
            const std::string &workingFolder, bool ownSession)
{
    std::erase_if(DetachedChildren(),
                  [](pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; });
    const SpawnSetting setting(workingFolder, ownSession);
    const auto pointers = ArgumentsFor(arguments);
    pid_t child = 0;
    const int failure = posix_spawn(&child, path.c_str(), &setting.actions, &setting.attributes,
                                    pointers.data(), environ);
    return failure == 0 ? child : 0;
}

enum class End { Success, Failure, StillRuns };

// Waits at most `limitMs` for the end of a child, which then continues without being waited for.
End WaitFor(pid_t child, std::int64_t limitMs)
{
    constexpr std::int64_t kStepMs = 5;
    for (std::int64_t waitedMs = 0; waitedMs <= limitMs; waitedMs += kStepMs) {
        int status = 0;
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? End::Success : End::Failure;
        if (ended < 0 && errno != EINTR)
            return End::Failure;
        const timespec step{0, kStepMs * 1'000'000};
        nanosleep(&step, nullptr);
    }
    DetachedChildren().push_back(child);
    return End::StillRuns;
}

} // namespace

std::string FindProgram(const std::string &name)
{
    if (name.find('/') != std::string::npos)
        return CanRun(name) ? name : std::string();
    const char *path = std::getenv("PATH");
    std::string_view rest = path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const auto end = rest.find(':');
        std::string candidate = std::string(rest.substr(0, end)) + "/" + name;
        if (candidate.front() == '/' && CanRun(candidate))
            return candidate;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return {};
}

bool StartDetached(const std::vector<std::string> &arguments, const std::string &workingFolder)
{
    const std::string program = FindProgram(arguments.at(0));
    const pid_t child = program.empty() ? 0 : Start(program, arguments, workingFolder, true);
    if (child != 0)
        DetachedChildren().push_back(child);
    return child != 0;
}

bool OpenWithDesktop(std::string address, const std::string &workingFolder)
{
    constexpr std::size_t kLongestArgument = 100'000; // Linux takes 128 KiB at most
    constexpr std::int64_t kRefusalMs = 500;
    if (address.size() > kLongestArgument) {
        std::size_t length = kLongestArgument;
        while (length > 0 && runtime::ContinuesCharacter(address[length]))
            --length;
        address.resize(length);
    }
    const std::string program = FindProgram("xdg-open");
    const pid_t child =
        program.empty() ? 0 : Start(program, {"xdg-open", address}, workingFolder, true);
    return child != 0 && WaitFor(child, kRefusalMs) != End::Failure;
}

bool RunQuietly(const std::vector<std::string> &arguments, std::int64_t timeoutMs)
{
    const std::string program = FindProgram(arguments.at(0));
    const pid_t child = program.empty() ? 0 : Start(program, arguments, {}, false);
    return child != 0 && WaitFor(child, timeoutMs) == End::Success;
}

} // namespace platform
