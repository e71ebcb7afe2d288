#include "shell/preferences/preferences.h"

#include "browser/commands.h"
#include "browser/form/formcommands.h"
#include "browser/mainform.h"
#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/desktop.h"
#include "platform/disk/drives.h"
#include "platform/disk/folders.h"
#include "platform/disk/userfolders.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/preferences/folderlook.h"
#include "shell/preferences/newfolder.h"
#include "shell/settings.h"

#include <utility>

namespace shell
{

namespace
{

using platform::FolderAnswer;

constexpr int kEnterKey = 13;

// One exists from the command until the window has closed. Events run during a wait for a disk,
// before the window is shown: the user may choose the command again then.
class OneWindow
{
public:
    OneWindow() { Flag() = true; }
    ~OneWindow() { Flag() = false; }
    OneWindow(const OneWindow &) = delete;
    OneWindow &operator=(const OneWindow &) = delete;

    static bool IsOpen() { return Flag(); }

private:
    static bool &Flag()
    {
        static bool flag = false;
        return flag;
    }
};

platform::Folders &TheFolders()
{
    return *platform::TheMachine().folders;
}

std::string TextOf(std::string_view defaultText, std::string_view key)
{
    return GetLanguageText(defaultText, key, kPreferences);
}

// Shows one line in the list instead of its rows: how many songs the folder in the box has.
void ShowFileCount(PreferencesForm &form)
{
    form.Files = catalogue::MP3FilesIn(form.DirList);
    const std::size_t count = form.Files.size();
    std::string text =
        count == 0 ? TextOf("No MP3 files in this folder itself. Its sub-folders are searched too.",
                            "NoFilesHere")
                   : TextOf("MP3 files in this folder: $Count$", "FilesHere");
    form.LV.SetHint(runtime::Replace(text, "$Count$", std::to_string(count)));
}

// Changes DirList. Returns: why it could not be changed, if so.
FolderAnswer SetDirList(PreferencesForm &form, const std::string &path)
{
    LongWait wait;
    wait.begin = [&form] {
        form.waiting = true;
        EnableChoices(form, false);
    };
    wait.end = [&form] {
        form.waiting = false;
        EnableChoices(form, true);
    };
    wait.isEnded = [&form] { return form.abandoned; };
    const FolderAnswer answer = ProbeFolder(path, wait);
    if (answer != FolderAnswer::Listed)
        return answer;
    form.DirList = path;
    catalogue::MoveMP3s(path);
    form.txtPath.SetText(path);
    ShowFileCount(form);
    return answer;
}

// Opens the tree from the drive down to the folder in the box, and lists its files. Each of these
// nodes is selected, so that in the end the selected one is the folder in DirList.
void OpenTree(PreferencesForm &form)
{
    const std::string target = form.DirList;
    const bool wasLoading = std::exchange(form.loading, true);
    for (const std::string &part : form.dirTree->FoldersDownTo(target)) {
        const ui::NodeId node = form.dirTree->FindPath(part);
        if (node == ui::kNoNode)
            break; // this folder is not in the tree, so those below it are not either
        form.tvwDirTree.MakeVisible(node);
        form.tvwDirTree.Select(node);
        form.tvwDirTree.SetExpanded(node, true);
    }
    form.loading = wasLoading;
    form.LV.ClearRows();
    form.Files = catalogue::MP3FilesIn(target);
    for (const std::string &name : form.Files)
        form.LV.AddRow(name, name, "MP3", {});
}

// The folder that the text in the box names; empty for an empty text.
std::string TypedFolder(const PreferencesForm &form)
{
    std::string text(runtime::Trim(form.txtPath.Text()));
    if (text == "~" || text.starts_with("~/"))
        text.replace(0, 1, platform::HomeFolder());
    return runtime::CutSeparators(platform::AbsolutePath(text));
}

[[noreturn]] void ThrowNoFolder(const std::string &path, FolderAnswer answer)
{
    const int number =
        answer == FolderAnswer::Missing ? runtime::kPathNotFound : runtime::kPathFileAccess;
    throw runtime::RuntimeError(number, path + ": " + runtime::DescribeError(number));
}

// Opens the folder that was typed; does nothing when the box shows DirList.
void OpenTypedFolder(PreferencesForm &form)
{
    if (form.txtPath.Text() == form.DirList)
        return;
    const std::string path = TypedFolder(form);
    if (path.empty()) {
        form.txtPath.SetText(form.DirList);
        return;
    }
    const FolderAnswer answer = SetDirList(form, path);
    if (form.abandoned)
        return; // the window is about to close
    if (answer != FolderAnswer::Listed)
        ThrowNoFolder(path, answer);
    form.txtPath.SetText(form.DirList);
    OpenTree(form);
}

} // namespace

PreferencesForm::PreferencesForm()
{
    unload = [this] { ui::Close(*this); };
    cmdOk.onClick = [this] { cmdOk_Click(*this); };
    cmdCancel.onClick = [this] { cmdCancel_Click(*this); };
    cmdApply.onClick = [this] { cmdApply_Click(*this); };
    txtPath.keyPressed = [this](char32_t key) {
        return txtPath_KeyPress(*this, static_cast<int>(key));
    };
    txtPath.lostFocus = [this] { txtPath_LostFocus(*this); };
    onLoad = [this] { LoadPreferences(*this); };
    mayClose = [this] { return MayUnloadPreferences(*this); };
    onUnload = [this] { UnloadPreferences(*this); };
}

void LoadPreferences(PreferencesForm &form)
{
    form.SetTitle(
        runtime::Replace(GetLanguageText("&Preferences", "Preferences", "OptionMenus"), "&", ""));
    form.abandoned = false;
    form.Reload.SetChecked(GetFlagPreference("RefreshAtStartUp"));
    const StartFolder start = FindStartFolder();
    form.standIn = start.isSubstitute ? start.path : std::string();
    SetDirList(form, start.path);
    ShowFlags(form);
    form.tmrUnload.event = [&form] {
        if (MayUnloadPreferences(form) && form.unload)
            form.unload();
    };
    form.dirTree = std::make_unique<ui::cDirTree>();
    form.dirTree->SetTV(form.tvwDirTree);
    form.dirTree->SetParent({&form.LV, nullptr, form.addDesktopIcon});
    form.dirTree->ChangePath = [&form] { DirTree_ChangePath(form); };
    form.tvwDirTree.popupOf = [&form](ui::NodeId node) {
        std::vector<ui::KeyedTree::PopupEntry> entries;
        if (form.dirTree->IsFolder(node) && !form.dirTree->IsListing())
            entries.push_back({GetLanguageText("&New folder...", "NewFolder", "PopUpMenu"),
                               [&form] { NewFolder(*form.dirTree, form.tvwDirTree); }});
        return entries;
    };
    form.folderBefore = TheFolders().CurrentFolder();
    TheFolders().SetCurrentFolder(form.DirList);
    form.loading = true;
    form.dirTree->LoadTV();
    form.loading = false;
    if (form.DirList != "/")
        OpenTree(form);
}

void DirTree_ChangePath(PreferencesForm &form)
{
    const ui::NodeId selected = form.tvwDirTree.Selected();
    if (form.loading || selected == ui::kNoNode || !form.dirTree->IsFolder(selected))
        return;
    const std::string path = form.dirTree->PathOf(selected);
    if (path == form.DirList || SetDirList(form, path) == FolderAnswer::Listed)
        return;
    if (const ui::NodeId before = form.dirTree->FindPath(form.DirList); before != ui::kNoNode)
        form.tvwDirTree.Select(before);
}

bool txtPath_KeyPress(PreferencesForm &form, int key)
{
    if (key != kEnterKey)
        return false;
    OpenTypedFolder(form);
    return true;
}

void txtPath_LostFocus(PreferencesForm &form)
{
    if (form.regenerating)
        return;
    try {
        OpenTypedFolder(form);
    } catch (const runtime::RuntimeError &) {
        // A box here would take the click with which the user leaves the text box. Apply opens the
        // folder again and reports the error.
    }
}

void cmdApply_Click(PreferencesForm &form)
{
    if (form.regenerating || form.dirTree->IsListing())
        return;
    OpenTypedFolder(form);
    if (form.abandoned)
        return;
    ApplyChoices(form);
}

void cmdOk_Click(PreferencesForm &form)
{
    if (form.regenerating || form.dirTree->IsListing())
        return;
    cmdApply_Click(form);
    if (form.unload && !form.abandoned) // else it closes by itself
        form.unload();
}

void cmdCancel_Click(PreferencesForm &form)
{
    if (MayUnloadPreferences(form) && form.unload)
        form.unload();
}

bool MayUnloadPreferences(PreferencesForm &form)
{
    if (form.regenerating)
        return false;
    const bool lists = form.dirTree != nullptr && form.dirTree->IsListing();
    if (lists)
        form.dirTree->Abandon();
    form.abandoned = form.abandoned || form.waiting;
    const bool waits = lists || form.waiting;
    form.tmrUnload.SetEnabled(waits);
    return !waits;
}

void UnloadPreferences(PreferencesForm &form)
{
    form.tmrUnload.SetEnabled(false);
    // The current folder of the process must not stay in a folder of the tree: that could not be
    // unmounted.
    if (!form.folderBefore.empty() && !TheFolders().SetCurrentFolder(form.folderBefore))
        TheFolders().SetCurrentFolder("/");
    form.folderBefore.clear();
    form.dirTree.reset();
}

void submnuPreferences_Click(const std::function<void()> &showModally)
{
    if (catalogue::IsRegenerating() || OneWindow::IsOpen())
        return;
    const OneWindow open;
    const std::string before = TheGlobals().MP3Directory;
    showModally();
    if (catalogue::DataAccess == nullptr)
        return; // the user has ended the program from this window
    TheGlobals().MP3Directory = GetPreference("MP3 Directory");
    if (TheGlobals().MP3Directory != before)
        browser::RegenerateAndLoad(browser::frmMain(), false);
}

void InstallPreferences()
{
    browser::RegisterCommand(
        "submnuPreferences",
        [] {
            submnuPreferences_Click([] {
                PreferencesForm form;
                ui::ShowModal(form);
            });
        },
        [] { return !catalogue::IsRegenerating(); });
}

} // namespace shell
