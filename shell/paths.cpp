#include "shell/paths.h"

#include "shell/apppath.h"

namespace shell
{

namespace
{

// The number of bytes up to and including the last separator.
std::size_t FolderLength(std::string_view path)
{
    const auto separator = path.rfind(PathSeparator);
    return separator == std::string_view::npos ? 0 : separator + 1;
}

} // namespace

std::string GetFileName(std::string_view path)
{
    return std::string(path.substr(FolderLength(path)));
}

std::string GetFolderPath(std::string_view path)
{
    return std::string(path.substr(0, FolderLength(path)));
}

std::string GetLastFolderName(std::string_view path)
{
    std::string_view folder = path.substr(0, FolderLength(path));
    if (!folder.empty())
        folder.remove_suffix(1);
    return GetFileName(folder);
}

} // namespace shell
