#include "catalogue/sqlite/cataloguecopy.h"

#include "catalogue/lockwait.h"
#include "catalogue/machineclock.h"
#include "catalogue/sqlite/cataloguefile.h"
#include "platform/clock.h"
#include "platform/disk/files.h"
#include "platform/machine.h"
#include "runtime/error.h"

#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

namespace catalogue
{

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view kFront = "MP3s ", kBack = ".mdb";
constexpr int kPagesAStep = 1024;
constexpr int kWaitUs = 10000; // between tries while the file is locked

std::string ReasonOf(int errnoValue, const std::string &path)
{
    return path + ": " + runtime::FileError(errnoValue).description;
}

// The names of the copies in the folder, the oldest first: they contain the time, year first.
std::vector<std::string> CopiesIn(const std::string &folder)
{
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(kFront) && name.ends_with(kBack))
            names.push_back(name);
    }
    std::ranges::sort(names);
    return names;
}

std::string NewName(const std::vector<std::string> &taken)
{
    const platform::LocalTime now = platform::TheMachine().clock->Now();
    char time[64];
    std::snprintf(time, sizeof time, "%04d-%02d-%02d %02d-%02d-%02d", now.year, now.month, now.day,
                  now.hour, now.minute, now.second);
    const std::string front = std::string(kFront) + time;
    std::string name = front + std::string(kBack);
    for (int number = 2; std::ranges::find(taken, name) != taken.end(); number++)
        name = front + "_" + std::to_string(number) + std::string(kBack);
    return name;
}

// Copies the database with SQLite's backup procedures into the empty file `to`. Returns: the reason
// of a failure, or an empty text.
std::string CopyDatabase(sqlite3 *from, const std::string &to)
{
    sqlite3 *target = nullptr;
    std::int64_t remainingUs = LockTimeoutMs() * 1000;
    int code = sqlite3_open_v2(to.c_str(), &target, SQLITE_OPEN_READWRITE, nullptr);
    if (code == SQLITE_OK) {
        if (sqlite3_backup *copy = sqlite3_backup_init(target, "main", from, "main")) {
            do {
                code = sqlite3_backup_step(copy, kPagesAStep);
                if ((code == SQLITE_BUSY || code == SQLITE_LOCKED) && remainingUs > 0) {
                    MachineSleepUs(kWaitUs);
                    remainingUs -= kWaitUs;
                    code = SQLITE_OK;
                }
            } while (code == SQLITE_OK);
            sqlite3_backup_finish(copy);
        }
        code = sqlite3_errcode(target);
    }
    std::string reason = code == SQLITE_OK ? std::string() : to + ": " + sqlite3_errmsg(target);
    sqlite3_close(target);
    return reason;
}

// Gives the finished copy its name. Returns: the reason of a failure, or an empty text.
std::string GiveName(int handle, const std::string &temporary, const std::string &path)
{
    int failure = platform::TheFiles().Flush(handle);
    if (failure == 0)
        failure = platform::TheFiles().Rename(temporary, path);
    if (failure == 0)
        failure = platform::TheFiles().FlushFolderOf(path);
    return failure == 0 ? std::string() : ReasonOf(failure, path);
}

std::string MakeCopy(sqlite3 *from, const std::string &path)
{
    std::string temporary;
    const int handle = platform::TheFiles().CreateBeside(path, temporary);
    if (handle < 0)
        return ReasonOf(-handle, path);
    std::string reason = CopyDatabase(from, temporary);
    if (reason.empty())
        reason = GiveName(handle, temporary, path);
    platform::TheFiles().Close(handle);
    if (!reason.empty())
        platform::TheFiles().Delete(temporary);
    return reason;
}

} // namespace

std::string CopyCatalogue(const std::string &path)
{
    const std::string folder = (fs::path(path).parent_path() / "Backup").string();
    if (const int failure = platform::TheFiles().MakeFolder(folder);
        failure != 0 && failure != EEXIST)
        return ReasonOf(failure, folder);
    std::vector<std::string> copies = CopiesIn(folder);
    const std::string name = NewName(copies);
    try {
        const auto file = CatalogueFile::At(path);
        std::string reason = MakeCopy(file->Main().Db(), folder + "/" + name);
        if (!reason.empty())
            return reason;
    } catch (const ProviderFailure &failure) {
        return failure.what();
    }
    // An old copy that cannot be removed stays; this is not reported.
    for (std::size_t old = 0; old + kCopiesKept <= copies.size(); old++)
        platform::TheFiles().Delete(folder + "/" + copies[old]);
    return {};
}

} // namespace catalogue
