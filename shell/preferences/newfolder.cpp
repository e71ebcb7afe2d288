// New folder, the command of the directory tree's popup.
#include "platform/desktop.h"
#include "platform/disk/files.h"
#include "platform/disk/folders.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "shell/language.h"
#include "shell/preferences/preferences.h"

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

void NewFolder(PreferencesForm &form)
{
    const ui::NodeId node = form.tvwDirTree.Selected();
    if (node == ui::kNoNode || !form.dirTree->IsFolder(node))
        return;
    const std::string folder = form.dirTree->PathOf(node);
    const std::optional<std::string> name = AskForName();
    if (!name || name->empty())
        return;
    const std::string path = runtime::JoinPath(folder, *name);
    const int reason = IsTaken(path) ? EEXIST : platform::TheMachine().folders->MakeFolder(path);
    if (reason != 0)
        throw runtime::FileError(reason, path);
    form.dirTree->ListDirs(folder);
    const ui::NodeId listed = form.dirTree->FindPath(folder);
    if (listed == ui::kNoNode)
        return;
    form.tvwDirTree.SortChildren(listed);
    form.tvwDirTree.SetExpanded(listed, true);
}

} // namespace shell
