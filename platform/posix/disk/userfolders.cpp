#include "platform/disk/userfolders.h"

#include "runtime/paths.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

namespace platform
{

namespace
{

constexpr std::string_view kNowhere = "/dev/null"; // no folder: nothing can be created in it

std::string UserHome()
{
    std::string home = Environment("HOME");
    if (home.starts_with('/'))
        return home;
    const passwd *user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr && *user->pw_dir == '/'
               ? std::string(user->pw_dir)
               : std::string(kNowhere);
}

std::string UserFolder(const char *variable, const char *underHome)
{
    const std::string chosen = Environment(variable);
    return chosen.starts_with('/') ? chosen : UserHome() + underHome;
}

bool IsSameFolder(const std::string &one, const char *other)
{
    struct stat first {
    }, second{};
    return stat(one.c_str(), &first) == 0 && stat(other, &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::string CurrentFolder()
{
    std::string shown = Environment("PWD");
    if (shown.starts_with('/') && IsSameFolder(shown, "."))
        return shown;
    char buffer[PATH_MAX];
    return getcwd(buffer, sizeof buffer) != nullptr ? buffer : "/";
}

// Removes the last part of `folder`, which has no trailing separator.
void LeaveFolder(std::string &folder)
{
    struct stat status {
    };
    if (lstat(folder.c_str(), &status) == 0 && S_ISLNK(status.st_mode)) {
        if (char *real = realpath(folder.c_str(), nullptr)) {
            folder = real;
            std::free(real);
        }
    }
    const auto separator = folder.rfind('/');
    folder.resize(separator == std::string::npos ? 0 : separator);
}

} // namespace

std::string Environment(const char *name)
{
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string HomeFolder()
{
    std::string home = UserHome();
    while (home.size() > 1 && home.ends_with('/'))
        home.pop_back();
    return home;
}

std::string ConfigHome()
{
    return UserFolder("XDG_CONFIG_HOME", "/.config");
}

std::string DataHome()
{
    return UserFolder("XDG_DATA_HOME", "/.local/share");
}

std::string ProgramFile()
{
    return "/proc/self/exe";
}

std::string ProgramFolder()
{
    char buffer[PATH_MAX];
    const ssize_t length = readlink(ProgramFile().c_str(), buffer, sizeof buffer);
    const std::string path(buffer, length > 0 ? static_cast<std::size_t>(length) : 0);
    return runtime::ParentFolder(path);
}

std::string LocaleName()
{
    for (const char *variable : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (std::string name = Environment(variable); !name.empty())
            return name;
    return "C";
}

std::string AbsolutePath(const std::string &path)
{
    if (path.empty())
        return {};
    const std::string whole = path.starts_with('/') ? path : CurrentFolder() + "/" + path;
    std::string result; // without a trailing separator; empty means the root
    std::size_t at = 0;
    while (at < whole.size()) {
        const auto end = std::min(whole.find('/', at), whole.size());
        const std::string_view part = std::string_view(whole).substr(at, end - at);
        if (part == "..")
            LeaveFolder(result);
        else if (!part.empty() && part != ".")
            result.append("/").append(part);
        at = end + 1;
    }
    if (result.empty() || (path.ends_with('/') && !result.ends_with('/')))
        result.push_back('/');
    return result;
}

} // namespace platform
