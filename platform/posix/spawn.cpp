#include "platform/posix/spawn.h"

#include "platform/posix/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <string_view>

namespace platform::posix
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

// In the child: becomes the program. Only calls that are allowed between fork and exec.
[[noreturn]] void Become(const char *program, char *const *arguments, const char *workingFolder)
{
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, fd);
    for (const int signalNo : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ})
        signal(signalNo, SIG_DFL);
    if (workingFolder != nullptr && chdir(workingFolder) != 0) {
        // a folder that is not there leaves the current one
    }
    execv(program, arguments);
    _exit(127);
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
    if (program.empty())
        return false;
    const auto pointers = ArgumentsFor(arguments);
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        setsid();
        if (fork() != 0) // the grandchild has no parent that would have to wait for it
            _exit(0);
        Become(program.c_str(), pointers.data(), workingFolder.c_str());
    }
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

bool OpenWithDesktop(std::string address, const std::string &workingFolder)
{
    constexpr std::size_t kLongestArgument = 100'000; // the system's own limit is 128 KiB
    constexpr int kRefusalMs = 500;
    constexpr int kStepMs = 10;
    if (address.size() > kLongestArgument) {
        std::size_t length = kLongestArgument;
        while (length > 0 && (static_cast<unsigned char>(address[length]) & 0xC0) == 0x80)
            --length;
        address.resize(length);
    }
    const std::string program = FindProgram("xdg-open");
    if (program.empty())
        return false;
    const std::vector<std::string> arguments{"xdg-open", address};
    const auto pointers = ArgumentsFor(arguments);
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) { // it watches the opener for a while, which then has no parent to wait for it
        setsid();
        const pid_t opener = fork();
        if (opener == 0)
            Become(program.c_str(), pointers.data(), workingFolder.c_str());
        int status = 0;
        for (int waitedMs = 0; opener > 0 && waitedMs < kRefusalMs; waitedMs += kStepMs) {
            if (waitpid(opener, &status, WNOHANG) == opener)
                _exit(WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1);
            const timespec step{0, kStepMs * 1'000'000L};
            nanosleep(&step, nullptr);
        }
        _exit(opener > 0 ? 0 : 1);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool RunQuietly(const std::vector<std::string> &arguments, std::int64_t timeoutMs)
{
    const std::string program = FindProgram(arguments.at(0));
    if (program.empty())
        return false;
    const auto pointers = ArgumentsFor(arguments);
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0)
        Become(program.c_str(), pointers.data(), nullptr);
    constexpr std::int64_t kStepMs = 5;
    for (std::int64_t waitedMs = 0; waitedMs <= timeoutMs; waitedMs += kStepMs) {
        int status = 0;
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (ended < 0 && errno != EINTR)
            return false;
        const timespec step{0, kStepMs * 1'000'000};
        nanosleep(&step, nullptr);
    }
    return false;
}

} // namespace platform::posix
