#include "app/windowlibrary.h"

#include "platform/disk/userfolders.h"
#include "platform/process.h"
#include "runtime/paths.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace app
{

namespace
{

constexpr std::string_view kName = "quenlin-windows";
constexpr std::string_view kInstalledFolder = "../lib/quenlin";

std::string LibraryPath()
{
    const std::string folder = platform::ProgramFolder();
    const std::string name = platform::LibraryFileName(kName);
    std::string beside = runtime::JoinPath(folder, name);
    std::error_code unknown;
    return std::filesystem::exists(beside, unknown)
               ? beside
               : runtime::JoinPath(runtime::JoinPath(folder, kInstalledFolder), name);
}

} // namespace

const WindowCalls *LoadWindows()
{
    std::string why;
    void *library = platform::OpenLibrary(LibraryPath(), why);
    const void *calls =
        library != nullptr ? platform::FindInLibrary(library, kWindowCalls, why) : nullptr;
    if (calls == nullptr)
        std::fprintf(stderr, "quenlin: the windows cannot be loaded: %s\n", why.c_str());
    return static_cast<const WindowCalls *>(calls);
}

} // namespace app
