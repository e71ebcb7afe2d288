#include "shell/startup/programhome.h"

#include "platform/machine.h"
#include "platform/posix/files.h"
#include "runtime/error.h"
#include "shell/apppath.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace shell
{

namespace
{

constexpr std::size_t kMaxShippedBytes = 64u << 20;
constexpr std::string_view kMarker = ".filled";
constexpr std::string_view kCatalogue = "MP3s.mdb";

platform::Files &Files()
{
    return *platform::TheMachine().files;
}

void Check(int reason, const std::string &path)
{
    if (reason != 0)
        throw runtime::FileError(reason, path);
}

bool IsThere(const std::string &path)
{
    return access(path.c_str(), F_OK) == 0;
}

std::string Read(const std::string &path)
{
    auto bytes = platform::posix::ReadRegularFile(path, kMaxShippedBytes);
    if (!bytes)
        throw runtime::FileError(errno, path);
    return std::move(*bytes);
}

// Fills an open file and brings it to the disk. Returns an errno.
int WriteWhole(int handle, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = Files().Write(handle, bytes.data(), bytes.size());
        if (written <= 0)
            return written < 0 ? static_cast<int>(-written) : EIO;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return Files().Flush(handle);
}

enum class Existing { Keep, Replace };

// Brings `bytes` to the disk under a name of their own, then gives them the name `to`: whatever
// happens, what has that name is whole.
void WriteNew(const std::string &to, std::string_view bytes, Existing existing)
{
    std::string temporary;
    const int handle = Files().CreateBeside(to, temporary);
    Check(handle < 0 ? -handle : 0, to);
    int reason = WriteWhole(handle, bytes);
    Files().Close(handle);
    if (reason == 0)
        reason = existing == Existing::Replace ? Files().Rename(temporary, to)
                                               : Files().RenameNew(temporary, to);
    if (reason != 0)
        Files().Delete(temporary);
    if (reason != EEXIST || existing == Existing::Replace)
        Check(reason, to);
}

// Makes the folder and those above it; each new name is on the disk before the next step.
void MakeHome(const std::string &home)
{
    std::error_code unknown;
    if (fs::is_directory(home, unknown))
        return;
    const std::string above = fs::path(home).parent_path().string();
    if (!above.empty() && above != home)
        MakeHome(above);
    if (const int reason = Files().MakeFolder(home); reason != EEXIST)
        Check(reason, home);
    else if (!fs::is_directory(home, unknown)) // another process may have made it just now
        Check(ENOTDIR, home);
    Check(Files().FlushFolderOf(home), home);
}

// The names of the shipped files, in the order of the alphabet.
std::vector<std::string> ShippedNames(const std::string &folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (std::error_code other; entry->is_regular_file(other))
            names.push_back(entry->path().filename().string());
    Check(error.value(), folder);
    std::sort(names.begin(), names.end());
    return names;
}

// Whether the user's file is what an interrupted writing leaves: nothing, or a true beginning.
bool IsTorn(const std::string &shipped, const std::string &users)
{
    std::error_code unknown;
    if (!fs::is_regular_file(fs::symlink_status(users, unknown)))
        return false;
    const auto size = fs::file_size(users, unknown);
    const auto wholeSize = fs::file_size(shipped, unknown);
    if (unknown || size >= wholeSize) // most files are ruled out without a look at their bytes
        return false;
    const auto bytes = platform::posix::ReadRegularFile(users, kMaxShippedBytes);
    return bytes && Read(shipped).starts_with(*bytes);
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

namespace
{

std::string In(std::string folder, std::string_view name)
{
    return folder.append(1, PathSeparator).append(name);
}

} // namespace

void FillOnFirstStart(const std::string &shippedFolder, const std::string &home)
{
    const std::string marker = In(home, kMarker);
    if (IsThere(marker))
        return;
    MakeHome(home);
    for (const std::string &name : ShippedNames(shippedFolder)) {
        const std::string to = In(home, name);
        if (!IsThere(to))
            WriteNew(to, Read(In(shippedFolder, name)), Existing::Keep);
    }
    // The marker says that the files are there: it is written to the disk after them.
    Check(Files().FlushFolderOf(marker), home);
    WriteNew(marker, "", Existing::Keep);
    Check(Files().FlushFolderOf(marker), home);
}

void RestoreTornFiles(const std::string &shippedFolder, const std::string &home)
{
    std::vector<std::string> names;
    try {
        names = ShippedNames(shippedFolder);
    } catch (const runtime::RuntimeError &) {
        return; // an installation that is gone has nothing to give
    }
    for (const std::string &name : names) {
        const std::string from = In(shippedFolder, name);
        const std::string to = In(home, name);
        try {
            if (name != kCatalogue && IsTorn(from, to))
                WriteNew(to, Read(from), Existing::Replace);
        } catch (const runtime::RuntimeError &) {
            // The file stays as it is: a language or a help text is no reason not to start.
        }
    }
}

} // namespace shell
