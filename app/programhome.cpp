#include "app/programhome.h"

#include "lyrics/drafts.h"
#include "platform/disk/userfolders.h"
#include "platform/disk/wholefiles.h"
#include "platform/helperthread.h"
#include "runtime/codepage.h"
#include "runtime/paths.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "shell/startup/homechoice.h"
#include "shell/startup/shippedfiles.h"

#include <string>
#include <vector>

namespace app
{

namespace
{

// Removes the incomplete files that killed runs have left in the folders where only this program
// writes. A helper thread does it, because there may be many backups; nobody waits for it.
void RemoveWhatKilledRunsLeft(const std::string &home)
{
    const std::string drafts = lyrics::DraftFolder();
    platform::StartHelperThread(
        [folders = std::vector<std::string>{home, runtime::JoinPath(home, "Backup"),
                                            runtime::ParentFolder(drafts), drafts}] {
            for (const std::string &folder : folders)
                platform::RemoveAbandonedFiles(folder);
        });
}

} // namespace

void PrepareProgramHome()
{
    using namespace platform;
    runtime::UseCodePage(runtime::CodePageOfLocale(LocaleName()));
    shell::TheGlobals().UnicodeTags = shell::IsUnicodeTagsOn();
    const std::string ownChoice = Environment("QUENLIN_HOME");
    const shell::ProgramPlaces places{ProgramFolder(), AbsolutePath(ownChoice), DataHome()};
    shell::SetAppPath(shell::ChooseProgramHome(places));
    RemoveWhatKilledRunsLeft(shell::GetAppPath());
    if (!shell::IsInstalled(places))
        return;
    const std::string shippedFolder = places.programFolder + "/../share/quenlin";
    shell::FillOnFirstStart(shippedFolder, shell::GetAppPath());
    shell::RestoreTornFiles(shippedFolder, shell::GetAppPath());
    shell::RenewShippedFiles(shippedFolder, shell::GetAppPath());
}

} // namespace app
