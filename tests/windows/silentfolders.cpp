// silentfolders: preloaded into a program (LD_PRELOAD), makes each call that asks about a folder
// named "silent disk", or about what is in it, wait for ever, as with a disk that does not answer.
//
//   LD_PRELOAD=libsilentfolders.so quenlin

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <string_view>

namespace
{

// The calling thread waits here for good; the process can be ended all the same.
void WaitWhereSilent(const char *path)
{
    if (path != nullptr && std::string_view(path).find("silent disk") != std::string_view::npos)
        for (;;)
            pause();
}

// The procedure of that name that the one in this library replaces.
template <class Procedure>
Procedure *Next(const char *name)
{
    return reinterpret_cast<Procedure *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

// NOLINTBEGIN(cert-dcl50-cpp): the C library's procedures take their mode that way
int open(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const auto mode = va_arg(more, mode_t);
    va_end(more);
    WaitWhereSilent(path);
    return Next<decltype(open)>("open")(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const auto mode = va_arg(more, mode_t);
    va_end(more);
    WaitWhereSilent(path);
    return Next<decltype(open64)>("open64")(path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const auto mode = va_arg(more, mode_t);
    va_end(more);
    WaitWhereSilent(path);
    return Next<decltype(openat)>("openat")(folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const auto mode = va_arg(more, mode_t);
    va_end(more);
    WaitWhereSilent(path);
    return Next<decltype(openat64)>("openat64")(folder, path, flags, mode);
}
// NOLINTEND(cert-dcl50-cpp)

DIR *opendir(const char *path)
{
    WaitWhereSilent(path);
    return Next<decltype(opendir)>("opendir")(path);
}

int stat(const char *path, struct stat *status)
{
    WaitWhereSilent(path);
    return Next<decltype(stat)>("stat")(path, status);
}

int lstat(const char *path, struct stat *status)
{
    WaitWhereSilent(path);
    return Next<decltype(lstat)>("lstat")(path, status);
}

int fstatat(int folder, const char *path, struct stat *status, int flags)
{
    WaitWhereSilent(path);
    return Next<decltype(fstatat)>("fstatat")(folder, path, status, flags);
}

int statx(int folder, const char *path, int flags, unsigned wanted, struct statx *status)
{
    WaitWhereSilent(path);
    return Next<decltype(statx)>("statx")(folder, path, flags, wanted, status);
}

int access(const char *path, int mode)
{
    WaitWhereSilent(path);
    return Next<decltype(access)>("access")(path, mode);
}

int chdir(const char *path)
{
    WaitWhereSilent(path);
    return Next<decltype(chdir)>("chdir")(path);
}
}
