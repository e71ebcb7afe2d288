#include "runtime/paths.h"

namespace runtime
{

std::string_view FolderPart(std::string_view path)
{
    const auto separator = path.rfind(PathSeparator);
    return path.substr(0, separator == std::string_view::npos ? 0 : separator + 1);
}

std::string GetFileName(std::string_view path)
{
    return std::string(path.substr(FolderPart(path).size()));
}

std::string GetFolderPath(std::string_view path)
{
    return std::string(FolderPart(path));
}

std::string GetLastFolderName(std::string_view path)
{
    std::string_view folder = FolderPart(path);
    if (!folder.empty())
        folder.remove_suffix(1);
    return GetFileName(folder);
}

std::string ParentFolder(std::string_view path)
{
    const std::string_view folder = FolderPart(path);
    return std::string(folder.substr(0, folder.size() > 1 ? folder.size() - 1 : folder.size()));
}

std::string_view WithoutSeparators(std::string_view path)
{
    while (path.size() > 1 && path.back() == PathSeparator)
        path.remove_suffix(1);
    return path;
}

std::string CutSeparators(std::string path)
{
    path.resize(WithoutSeparators(path).size());
    return path;
}

bool IsInFolder(std::string_view path, std::string_view folder)
{
    if (!path.starts_with(folder))
        return false;
    return path.size() == folder.size() || folder.ends_with(PathSeparator) ||
           path[folder.size()] == PathSeparator;
}

std::string JoinPath(std::string_view folder, std::string_view name)
{
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path = folder;
    if (!path.ends_with(PathSeparator))
        path += PathSeparator;
    path += name;
    return path;
}

} // namespace runtime
