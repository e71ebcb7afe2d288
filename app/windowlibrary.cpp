#include "app/windowlibrary.h"

#include "platform/disk/userfolders.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace app
{

namespace
{

constexpr const char *kName = "quenlin-windows.so";
constexpr const char *kInstalledFolder = "../lib/quenlin";

std::string LibraryPath()
{
    const std::string folder = platform::ProgramFolder() + "/";
    const std::string beside = folder + kName;
    return access(beside.c_str(), F_OK) == 0 ? beside : folder + kInstalledFolder + "/" + kName;
}

} // namespace

const WindowCalls *LoadWindows()
{
    void *library = dlopen(LibraryPath().c_str(), RTLD_LAZY | RTLD_LOCAL);
    const void *calls = library != nullptr ? dlsym(library, kWindowCalls) : nullptr;
    if (calls == nullptr)
        std::fprintf(stderr, "quenlin: the windows cannot be loaded: %s\n", dlerror());
    return static_cast<const WindowCalls *>(calls);
}

bool HasDisplay()
{
    for (const char *name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        if (const char *value = std::getenv(name); value != nullptr && *value != '\0')
            return true;
    return false;
}

} // namespace app
