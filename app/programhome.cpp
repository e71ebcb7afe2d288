#include "app/programhome.h"

#include "platform/disk/userfolders.h"
#include "runtime/codepage.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "shell/startup/programhome.h"
#include "shell/startup/shippedfiles.h"

namespace app
{

void PrepareProgramHome()
{
    using namespace platform;
    runtime::UseCodePage(runtime::CodePageOfLocale(LocaleName()));
    shell::TheGlobals().UnicodeTags = shell::IsUnicodeTagsOn();
    const std::string ownChoice = Environment("QUENLIN_HOME");
    const shell::ProgramPlaces places{ProgramFolder(), AbsolutePath(ownChoice), DataHome()};
    shell::SetAppPath(shell::ChooseProgramHome(places));
    if (!shell::IsInstalled(places))
        return;
    const std::string shippedFolder = places.programFolder + "/../share/quenlin";
    shell::FillOnFirstStart(shippedFolder, shell::GetAppPath());
    shell::RestoreTornFiles(shippedFolder, shell::GetAppPath());
    shell::RenewShippedFiles(shippedFolder, shell::GetAppPath());
}

} // namespace app
