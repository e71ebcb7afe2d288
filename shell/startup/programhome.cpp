#include "shell/startup/programhome.h"

#include "platform/posix/files.h"
#include "runtime/error.h"
#include "shell/apppath.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace shell
{

namespace
{

constexpr std::size_t kMaxShippedBytes = 64u << 20;

bool IsThere(const std::string &path)
{
    return access(path.c_str(), F_OK) == 0;
}

// Copies one file under a name of its own, then gives it its name unless another has taken that.
void CopyNew(const std::string &from, const std::string &to)
{
    if (IsThere(to))
        return;
    const auto bytes = platform::posix::ReadRegularFile(from, kMaxShippedBytes);
    if (!bytes)
        throw runtime::FileError(errno, from);
    const std::string temporary = to + "." + std::to_string(getpid());
    const bool copied = platform::posix::ReplaceFile(temporary, *bytes);
    const bool named = copied && (link(temporary.c_str(), to.c_str()) == 0 || errno == EEXIST);
    const int reason = errno;
    unlink(temporary.c_str());
    if (!named)
        throw runtime::FileError(reason, to);
}

} // namespace

bool IsInstalled(const ProgramPlaces &places)
{
    return places.ownChoice.empty() && !IsThere(places.programFolder + PathSeparator + "portable");
}

std::string ChooseProgramHome(const ProgramPlaces &places)
{
    if (!places.ownChoice.empty())
        return places.ownChoice;
    return IsInstalled(places) ? places.dataHome + PathSeparator + "quenlin" : places.programFolder;
}

void FillOnFirstStart(const std::string &shippedFolder, const std::string &home)
{
    const std::string marker = home + PathSeparator + ".filled";
    if (IsThere(marker))
        return;
    if (!platform::posix::MakeFolders(home))
        throw runtime::FileError(errno, home);
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(shippedFolder, error))
        if (std::error_code other; entry.is_regular_file(other))
            CopyNew(entry.path().string(), home + PathSeparator + entry.path().filename().string());
    if (error)
        throw runtime::FileError(error.value(), shippedFolder);
    if (!platform::posix::ReplaceFile(marker, ""))
        throw runtime::FileError(errno, marker);
}

} // namespace shell
