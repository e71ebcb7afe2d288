#include "player/install.h"

#include "browser/commands.h"
#include "browser/itemkinds.h"
#include "browser/itemlist.h"
#include "browser/mainform.h"
#include "player/controlsform.h"
#include "player/nowplaying.h"
#include "player/playmp3.h"
#include "player/winampmod.h"

namespace player
{

namespace
{

// Plays the row of the list on which the popup was opened.
void PlaySelected()
{
    ui::KeyedList &list = browser::PopupList(browser::frmMain());
    const std::string path = browser::SelectedPath(list);
    if (!path.empty())
        PlayMP3File(path, list);
}

// A row that is not a song has no path, such as the warning that nothing was found.
void OpenSong(const std::string &path, ui::KeyedList &list)
{
    if (!path.empty())
        PlayMP3File(path, list);
}

} // namespace

void Install()
{
    ResetWinAmpMod();
    ResetPlayMP3();
    browser::RegisterItemKind(browser::kFileMarker, OpenSong);
    browser::RegisterCommand("cp_Play", PlaySelected);
    // Sent to the window that was last found; when no player runs, nothing happens.
    browser::RegisterCommand("cp_Pause", [] { PauseTrack(); });
    browser::RegisterCommand("cp_Stop", [] { StopTrack(); });
    browser::RegisterCommand("submnuSongControls", submnuSongControls_Click);
    browser::frmMain().tmr_Playing.event = tmr_Playing_Timer;
    browser::frmMain().tmrRefreshList.event = tmrRefreshList_Timer;
}

} // namespace player
