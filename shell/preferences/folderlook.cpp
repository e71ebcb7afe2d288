#include "shell/preferences/folderlook.h"

#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/disk/userfolders.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "runtime/paths.h"
#include "shell/settings.h"

#include <utility>

namespace shell
{

namespace
{

using platform::FolderAnswer;

constexpr std::int64_t kShortMs = 200; // how long to wait for a disk that has not answered before

platform::Folders &TheFolders()
{
    return *platform::TheMachine().folders;
}

bool IsCatalogueEmpty()
{
    const auto records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s", catalogue::kDetect));
    return records != nullptr && records->IsOpen() && records->AtEnd();
}

// The folder that probably has the user's songs.
std::string MusicFolder()
{
    for (const std::string &folder : {TheFolders().UserFolder("MUSIC"), platform::HomeFolder()})
        if (folder.starts_with('/') && ProbeFolder(folder) == FolderAnswer::Listed)
            return folder;
    return "/";
}

} // namespace

FolderAnswer ProbeFolder(const std::string &path, const LongWait &wait, std::int64_t limitMs)
{
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    bool isSlow = false;
    const auto begin = [&] {
        isSlow = true;
        desktop.SetPointer(platform::Pointer::ArrowHourglass);
        if (wait.begin)
            wait.begin();
    };
    const platform::Folders::KeepWaiting keepWaiting = platform::WaitWithEvents(begin, limitMs);
    std::string firstFolder;
    const FolderAnswer answer = TheFolders().Probe(
        path, {}, [&] { return keepWaiting() && (!wait.isEnded || !wait.isEnded()); }, firstFolder);
    if (isSlow) {
        desktop.SetPointer(platform::Pointer::Normal);
        if (wait.end)
            wait.end();
    }
    return answer;
}

std::string StoredFolder()
{
    return GetSetting(kPreferences, "MP3 Directory");
}

StartFolder FindStartFolder()
{
    const std::string stored = runtime::CutSeparators(StoredFolder());
    if (stored.empty())
        return {MusicFolder(), !IsCatalogueEmpty()};
    const FolderAnswer answer = ProbeFolder(stored);
    if (answer == FolderAnswer::Listed)
        return {stored, false};
    if (!stored.starts_with('/'))
        return {MusicFolder(), true};
    // The folders above are likely to be on the same disk.
    const std::int64_t limitMs =
        answer == FolderAnswer::NoAnswer ? kShortMs : platform::kDiskLimitMs;
    std::string above = runtime::ParentFolder(stored);
    while (above.size() > 1 && ProbeFolder(above, {}, limitMs) != FolderAnswer::Listed)
        above = runtime::ParentFolder(above);
    return {above.empty() ? "/" : above, true};
}

} // namespace shell
