#include "shell/preferences/newfolder.h"

#include "platform/desktop.h"
#include "platform/disk/files.h"
#include "platform/disk/folders.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "shell/language.h"

#include <cerrno>

namespace shell
{

namespace
{

std::optional<std::string> AskForName()
{
    const auto textOf = [](std::string_view text, std::string_view key) {
        return GetLanguageText(text, key, "InputBox");
    };
    return platform::TheMachine().desktop->InputBox(
        textOf("Type the name of the new folder", "NameTheFolder"),
        textOf("Folder Name", "NameTheFolderTitle"),
        textOf("New Folder Name", "DefaultFoldersName"));
}

bool IsTaken(const std::string &path)
{
    platform::FileIdentity identity;
    return platform::TheMachine().files->Identify(path, identity) == 0;
}

} // namespace

void NewFolder(ui::cDirTree &dirTree, ui::KeyedTree &shown)
{
    const ui::NodeId node = shown.Selected();
    if (node == ui::kNoNode || !dirTree.IsFolder(node))
        return;
    const std::string folder = dirTree.PathOf(node);
    const std::optional<std::string> name = AskForName();
    if (!name || name->empty())
        return;
    const std::string path = runtime::JoinPath(folder, *name);
    const int reason = IsTaken(path) ? EEXIST : platform::TheMachine().folders->MakeFolder(path);
    if (reason != 0)
        throw runtime::FileError(reason, path);
    dirTree.ListDirs(folder);
    const ui::NodeId listed = dirTree.FindPath(folder);
    if (listed == ui::kNoNode)
        return;
    shown.SortChildren(listed);
    shown.SetExpanded(listed, true);
}

} // namespace shell
