#include "shell/startup/shippedfiles.h"

#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/hash.h"
#include "runtime/paths.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace shell
{

namespace
{

constexpr std::size_t kMaxShippedBytes = 64u << 20;
constexpr std::string_view kMarker = ".filled";
constexpr std::string_view kRecord = ".shipped";
constexpr std::size_t kMaxRecordBytes = 1u << 20;
constexpr std::string_view kCatalogue = "MP3s.mdb";

void Check(int reason, const std::string &path)
{
    if (reason != 0)
        throw runtime::FileError(reason, path);
}

bool IsThere(const std::string &path)
{
    std::error_code unknown;
    return fs::exists(path, unknown);
}

std::string Read(const std::string &path)
{
    auto bytes = platform::ReadRegularFile(path, kMaxShippedBytes);
    if (!bytes)
        throw runtime::FileError(errno, path);
    return std::move(*bytes);
}

enum class Existing { Keep, Replace };

// Writes `bytes` to the disk under another name, then gives the file the name `to`: whatever
// happens, the file with that name is complete.
void WriteNew(const std::string &to, std::string_view bytes, Existing existing)
{
    std::string temporary;
    const int handle = platform::TheFiles().CreateBeside(to, temporary);
    Check(handle < 0 ? -handle : 0, to);
    int reason = platform::TheFiles().WriteAll(handle, bytes);
    if (reason == 0)
        reason = platform::TheFiles().Flush(handle);
    platform::TheFiles().Close(handle);
    if (reason == 0)
        reason = existing == Existing::Replace ? platform::TheFiles().Rename(temporary, to)
                                               : platform::TheFiles().RenameNew(temporary, to);
    if (reason != 0)
        platform::TheFiles().Delete(temporary);
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
    if (const int reason = platform::TheFiles().MakeFolder(home); reason != EEXIST)
        Check(reason, home);
    else if (!fs::is_directory(home, unknown)) // another process may have made it just now
        Check(ENOTDIR, home);
    Check(platform::TheFiles().FlushFolderOf(home), home);
}

// The names of the shipped files, sorted by their bytes.
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

// Whether the user's file is what an interrupted writing leaves: an empty file, or the first part
// of the shipped one.
bool IsTorn(const std::string &shipped, const std::string &users)
{
    std::error_code unknown;
    if (!fs::is_regular_file(fs::symlink_status(users, unknown)))
        return false;
    const auto size = fs::file_size(users, unknown);
    const auto wholeSize = fs::file_size(shipped, unknown);
    if (unknown || size >= wholeSize) // most files are excluded without reading them
        return false;
    const auto bytes = platform::ReadRegularFile(users, kMaxShippedBytes);
    return bytes && Read(shipped).starts_with(*bytes);
}

// A shipped file at the time when it was copied. If its state is the same, its bytes are the same
// too and need not be read.
struct CopiedFile {
    std::string
        state; // size in bytes and time of change in ns, in decimal; any other text: unknown
    std::uint64_t hash = 0;

    bool operator==(const CopiedFile &) const = default;
};
using CopiedFiles = std::map<std::string, CopiedFile, std::less<>>;

// The record has one line for each file: hash in hexadecimal, a blank, state, a blank, name. A line
// of another form is ignored.
CopiedFiles ReadRecord(const std::string &home)
{
    CopiedFiles files;
    std::istringstream lines(
        platform::ReadRegularFile(runtime::JoinPath(home, kRecord), kMaxRecordBytes).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string hash, size, changed, name;
        if (!(words >> hash >> size >> changed) || !std::getline(words >> std::ws, name))
            continue;
        CopiedFile one{size.append(1, ' ').append(changed), 0};
        const auto end = std::from_chars(hash.data(), hash.data() + hash.size(), one.hash, 16);
        if (end.ec == std::errc() && end.ptr == hash.data() + hash.size())
            files[name] = one;
    }
    return files;
}

std::string FormatRecord(const CopiedFiles &files)
{
    std::ostringstream lines;
    for (const auto &[name, one] : files)
        lines << std::hex << one.hash << ' ' << one.state << ' ' << name << '\n';
    return lines.str();
}

std::string StateOf(const std::string &path)
{
    platform::FileIdentity file;
    if (platform::TheFiles().Identify(path, file) != 0)
        return "0 0";
    return std::to_string(file.sizeBytes) + " " + std::to_string(file.modifiedNs);
}

// Replaces the user's copy at `to` by `bytes` when it is still the file that was `copied`. Adds a
// missing one when none has been copied yet (null).
void Renew(const std::string &bytes, const std::string &to, const CopiedFile *copied)
{
    std::error_code unknown;
    const auto kind = fs::symlink_status(to, unknown).type();
    if (kind == fs::file_type::not_found) {
        if (copied == nullptr)
            WriteNew(to, bytes, Existing::Keep);
        return;
    }
    if (kind != fs::file_type::regular || copied == nullptr)
        return;
    const std::string users = Read(to);
    if (users != bytes && runtime::StableHashOf(users) == copied->hash)
        WriteNew(to, bytes, Existing::Replace);
}

// Updates all copies. Returns: the record for the next time.
CopiedFiles RenewAll(const std::string &shippedFolder, const std::string &home,
                     const CopiedFiles &before)
{
    CopiedFiles now;
    for (const std::string &name : ShippedNames(shippedFolder)) {
        if (name == kCatalogue)
            continue;
        const std::string from = runtime::JoinPath(shippedFolder, name);
        const auto known = before.find(name);
        const CopiedFile *copied = known == before.end() ? nullptr : &known->second;
        const std::string state = StateOf(from);
        if (copied != nullptr && copied->state == state) {
            now[name] = *copied;
            continue;
        }
        try {
            const std::string bytes = Read(from);
            Renew(bytes, runtime::JoinPath(home, name), copied);
            now[name] = {state, runtime::StableHashOf(bytes)};
        } catch (const runtime::RuntimeError &) {
            if (copied != nullptr)
                now[name] = *copied; // the next start tries again
        }
    }
    return now;
}

} // namespace

void FillOnFirstStart(const std::string &shippedFolder, const std::string &home)
{
    const std::string marker = runtime::JoinPath(home, kMarker);
    if (IsThere(marker))
        return;
    MakeHome(home);
    for (const std::string &name : ShippedNames(shippedFolder)) {
        const std::string to = runtime::JoinPath(home, name);
        if (!IsThere(to))
            WriteNew(to, Read(runtime::JoinPath(shippedFolder, name)), Existing::Keep);
    }
    // The marker says that the files are there: it is written to the disk after them.
    Check(platform::TheFiles().FlushFolderOf(marker), home);
    WriteNew(marker, "", Existing::Keep);
    Check(platform::TheFiles().FlushFolderOf(marker), home);
}

void RestoreTornFiles(const std::string &shippedFolder, const std::string &home)
{
    std::vector<std::string> names;
    try {
        names = ShippedNames(shippedFolder);
    } catch (const runtime::RuntimeError &) {
        return; // the installation is missing: there is nothing to copy
    }
    for (const std::string &name : names) {
        const std::string from = runtime::JoinPath(shippedFolder, name);
        const std::string to = runtime::JoinPath(home, name);
        try {
            if (name != kCatalogue && IsTorn(from, to))
                WriteNew(to, Read(from), Existing::Replace);
        } catch (const runtime::RuntimeError &) {
            // The file is not changed: an incomplete language or help text must not prevent the
            // start.
        }
    }
}

void RenewShippedFiles(const std::string &shippedFolder, const std::string &home)
{
    try {
        const CopiedFiles before = ReadRecord(home);
        const CopiedFiles now = RenewAll(shippedFolder, home, before);
        if (now == before)
            return;
        // The copies are on the disk before the record says so.
        Check(platform::TheFiles().FlushFolderOf(runtime::JoinPath(home, kRecord)), home);
        WriteNew(runtime::JoinPath(home, kRecord), FormatRecord(now), Existing::Replace);
    } catch (const runtime::RuntimeError &) {
        // The existing copies are used: a missing language or help text must not prevent the start.
    }
}

} // namespace shell
