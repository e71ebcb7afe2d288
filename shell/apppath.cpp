#include "shell/apppath.h"

#include "runtime/paths.h"

#include <utility>

namespace shell
{

namespace
{

struct State {
    std::string folder;
};

State &TheState()
{
    static State state;
    return state;
}

} // namespace

const std::string &GetAppPath()
{
    return TheState().folder;
}

void SetAppPath(std::string folder)
{
    if (!folder.empty() && folder.back() == runtime::PathSeparator)
        folder.pop_back();
    TheState().folder = std::move(folder);
}

std::string AppFile(std::string_view name)
{
    return GetAppPath() + runtime::PathSeparator + std::string(name);
}

} // namespace shell
