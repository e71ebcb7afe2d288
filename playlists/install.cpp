#include "playlists/install.h"

#include "browser/commands.h"
#include "playlists/bookmarks.h"
#include "playlists/lists.h"
#include "playlists/listsform.h"

namespace playlists
{

void Install()
{
    browser::MainForm &form = browser::frmMain();
    browser::RegisterCommand("submnuAddPlayList", [&form] { AddPlayList(form); });
    browser::RegisterCommand("submnuRemovePlayList", [&form] { ShowLists(form); });
    browser::RegisterCommand("submnuExportBookmarks", [&form] { AskAndExportBookmarks(form); });
    browser::RegisterItemKind(
        "&", [&form](const std::string &name, ui::KeyedList &) { ListPlayList(form, name); });
    form.tmrListFiles.event = [&form] { ShowFoundEntries(form); };
}

} // namespace playlists
