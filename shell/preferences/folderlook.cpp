#include "shell/preferences/folderlook.h"

#include "catalogue/adoclass.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "platform/posix/disk/userfolders.h"
#include "runtime/paths.h"
#include "shell/settings.h"

#include <utility>

namespace shell
{

namespace
{

using platform::FolderAnswer;

constexpr std::int64_t kQuietMs = 100; // how long to wait for a disk before events run
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
    for (const std::string &folder :
         {TheFolders().UserFolder("MUSIC"), platform::posix::HomeFolder()})
        if (folder.starts_with('/') && LookAt(folder) == FolderAnswer::Listed)
            return folder;
    return "/";
}

} // namespace

FolderAnswer LookAt(const std::string &path, const LongWait &wait, std::int64_t patienceMs)
{
    platform::Clock &clock = *platform::TheMachine().clock;
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    const std::int64_t since = clock.SteadyMs();
    bool yielded = false;
    std::string firstFolder;
    const FolderAnswer answer = TheFolders().Look(
        path, {},
        [&] {
            const std::int64_t waited = clock.SteadyMs() - since;
            if (waited >= kQuietMs) {
                if (!std::exchange(yielded, true)) {
                    desktop.SetPointer(platform::Pointer::ArrowHourglass);
                    if (wait.begin)
                        wait.begin();
                }
                desktop.DoEvents();
            }
            return waited < patienceMs && !platform::IsEndRequested() &&
                   (!wait.isEnded || !wait.isEnded());
        },
        firstFolder);
    if (yielded) {
        desktop.SetPointer(platform::Pointer::Normal);
        if (wait.end)
            wait.end();
    }
    return answer;
}

std::string CutSeparators(std::string path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

std::string StoredFolder()
{
    return GetSetting(kPreferences, "MP3 Directory");
}

StartFolder FindStartFolder()
{
    const std::string stored = CutSeparators(StoredFolder());
    if (stored.empty())
        return {MusicFolder(), !IsCatalogueEmpty()};
    const FolderAnswer answer = LookAt(stored);
    if (answer == FolderAnswer::Listed)
        return {stored, false};
    if (!stored.starts_with('/'))
        return {MusicFolder(), true};
    // The folders above are likely to be on the same disk.
    const std::int64_t patienceMs =
        answer == FolderAnswer::NoAnswer ? kShortMs : ui::cDirTree::kPatienceMs;
    std::string above = runtime::ParentFolder(stored);
    while (above.size() > 1 && LookAt(above, {}, patienceMs) != FolderAnswer::Listed)
        above = runtime::ParentFolder(above);
    return {above.empty() ? "/" : above, true};
}

} // namespace shell
