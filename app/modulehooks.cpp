#include "app/modulehooks.h"

#include "catalogue/edittags.h"
#include "catalogue/regeneration.h"
#include "catalogue/rowgroups.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "player/playing.h"
#include "shell/preferences/failuremail.h"

namespace app
{

void ConnectModules()
{
    metadata::TheMP3InfoHooks().beforeSlowRead = catalogue::CloseOpenGroup;
    catalogue::TheRegenerationControls().EmailBugReport = shell::EmailBugReport;
    metadata::TagWriterHooks &writer = metadata::TheTagWriterHooks();
    writer.updateCatalogue = catalogue::UpdateEditedTags;
    writer.settleCatalogue = catalogue::UpdateEditedTags;
    writer.releasePlayingFile = player::ReleasePlayingFile;
    writer.restorePlayingFile = player::RestorePlayingFile;
}

} // namespace app
