#include "platform/session.h"

#include "platform/disk/userfolders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace platform
{

namespace
{

// A private folder of the user among the temporary files; empty when another user owns a folder of
// that name, or when others may write to it.
std::string TemporaryFolder()
{
    const std::string folder = "/tmp/quenlin-" + std::to_string(getuid());
    mkdir(folder.c_str(), 0700);
    struct stat state;
    const bool isOwn = lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) &&
                       state.st_uid == getuid() && (state.st_mode & 077) == 0;
    return isOwn ? folder : std::string();
}

} // namespace

bool IsTerminal(Stream stream)
{
    const int fd = stream == Stream::Input    ? STDIN_FILENO
                   : stream == Stream::Output ? STDOUT_FILENO
                                              : STDERR_FILENO;
    return isatty(fd) == 1;
}

int ReadInputByte(char &byte)
{
    const ssize_t got = read(STDIN_FILENO, &byte, 1);
    return got >= 0 ? static_cast<int>(got) : -errno;
}

bool HasDisplay()
{
    constexpr std::array kVariables = {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};
    return std::ranges::any_of(kVariables,
                               [](const char *name) { return !Environment(name).empty(); });
}

std::string DisplayName()
{
    std::string name = Environment("WAYLAND_DISPLAY");
    return name.empty() ? Environment("DISPLAY") : name;
}

std::string SessionFolder()
{
    std::string folder = Environment("XDG_RUNTIME_DIR");
    return folder.empty() ? TemporaryFolder() : folder;
}

} // namespace platform
