#include "platform/process.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>

namespace platform
{

namespace
{

constexpr const char *kNothing = "/dev/null";

void OpenStandardStreams()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(fd, F_GETFD) < 0)
            open(kNothing, fd == STDIN_FILENO ? O_RDONLY : O_WRONLY);
}

// The reason of the failure that came last.
std::string WordsOfFailure()
{
    const char *words = dlerror();
    return words != nullptr ? words : "it is null";
}

[[noreturn]] void RunAndEnd(const std::function<void()> &trial)
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    dup2(open(kNothing, O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    trial();
    _exit(0);
}

} // namespace

void PrepareProcess()
{
    OpenStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // A regeneration allocates many small blocks and some large ones. The C library keeps lists of
    // the smallest free blocks and merges these at each large one; without these lists allocation
    // takes a third less time.
    mallopt(M_MXFAST, 0);
}

bool ReturnsInCopy(const std::function<void()> &trial)
{
    const pid_t child = fork();
    if (child == 0)
        RunAndEnd(trial);
    int status = -1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string LibraryFileName(std::string_view name)
{
    return std::string(name) + ".so";
}

void *OpenLibrary(const std::string &path, std::string &why)
{
    void *library = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr)
        why = WordsOfFailure();
    return library;
}

void *FindInLibrary(void *library, const char *name, std::string &why)
{
    void *found = dlsym(library, name);
    if (found == nullptr)
        why = WordsOfFailure();
    return found;
}

} // namespace platform
