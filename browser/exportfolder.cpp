#include "browser/exportfolder.h"

#include "platform/desktop.h"
#include "platform/disk/drives.h"
#include "platform/disk/files.h"
#include "platform/disk/folders.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "runtime/collation.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace browser
{

namespace
{

constexpr ui::Caption kCaptions[] = {
    {"", "SelectDir", "SelectDir", "Select the folder"},
    {"lblDrives", "SelectDir", "Drive", "D&rive:"},
    {"lblFolders", "SelectDir", "Folders", "Fo&lders:"},
    {"lblPath", "SelectDir", "Folder", "&Folder:"},
    {"cmdCreate", "SelectDir", "New", "&New"},
    {"cmdDelete", "SelectDir", "Delete", "&Delete"},
    {"cmdOk", "SelectDir", "Ok", "&Ok"},
    {"cmdCancel", "SelectDir", "Cancel", "&Cancel"},
};

constexpr std::string_view kAbove = "..";
constexpr int kIconTwips = 450;
constexpr int kBesideNamesTwips = 1350; // icon, margins, and a scroll bar
constexpr int kBackspaceKey = 8;

bool IsRoot(const std::string &path)
{
    return path.size() == 1;
}

// The longest drive that contains the path; the root when there is none.
std::string RootOf(const std::string &path, const std::vector<std::string> &drives)
{
    std::string root(1, runtime::PathSeparator);
    for (const std::string &drive : drives)
        if (runtime::IsInFolder(path, drive) && drive.size() > root.size())
            root = drive;
    return root;
}

void SortAsListsDo(std::vector<std::string> &names)
{
    std::sort(names.begin(), names.end(), [](const std::string &one, const std::string &other) {
        return runtime::CollateText(one, other) < 0;
    });
}

[[noreturn]] void ThrowNoFolder(const std::string &path, platform::FolderAnswer answer)
{
    const int number = answer == platform::FolderAnswer::Missing ? runtime::kPathNotFound
                                                                 : runtime::kPathFileAccess;
    throw runtime::RuntimeError(number, path + ": " + runtime::DescribeError(number));
}

} // namespace

ExportFolder::ExportFolder() : Form("frmExportFile", kCaptions)
{
    AddMembers();
    layout = ui::Column({ui::Row({lblDrives, ui::Filled(Drives)}), lblFolders, ui::Filled(Dirs),
                         ui::Row({lblPath, ui::Filled(txtPath)}),
                         ui::Row({cmdCreate, cmdDelete, ui::Room(), cmdOk, cmdCancel})});
    size.width = 6750;
    size.height = 6000;
    resizable = true;
    acceptButton = &cmdOk;
    cancelButton = &cmdCancel;
    onLoad = [this] { Load(); };
    onResize = [this] { Dirs.SetColumnWidth("Name", size.width - kBesideNamesTwips); };
    onKeyDown = [this](const ui::Key &key) {
        if (key.code != kBackspaceKey || m_waiting)
            return false;
        GoUp();
        return true;
    };
    mayClose = [this] { return !m_waiting; };
    Drives.onClick = [this] { DriveChosen(); };
    Dirs.onItemClick = [this] { RowChosen(); };
    Dirs.onDblClick = [this] { EnterRow(); };
    cmdCreate.onClick = [this] { CreateFolder(); };
    cmdDelete.onClick = [this] { DeleteFolder(); };
    cmdOk.onClick = [this] { Accept(); };
    cmdCancel.onClick = [this] { ui::AskToClose(*this); };
    Dirs.AddColumn("Icon", "", kIconTwips);
    Dirs.AddColumn("Name", "", size.width - kBesideNamesTwips);
    Dirs.HideHeaders(true);
    txtPath.SetLocked(true);
}

void ExportFolder::AddMembers()
{
    Add("lblDrives", lblDrives);
    Add("Drives", Drives, {.label = &lblDrives});
    Add("lblFolders", lblFolders);
    Add("Dirs", Dirs, {.label = &lblFolders});
    Add("lblPath", lblPath);
    Add("txtPath", txtPath, {.label = &lblPath});
    Add("cmdCreate", cmdCreate);
    Add("cmdDelete", cmdDelete);
    Add("cmdOk", cmdOk);
    Add("cmdCancel", cmdCancel);
}

void ExportFolder::Load()
{
    const std::vector<std::string> drives = platform::TheMachine().drives->Roots();
    Drives.SetItems(drives);
    const std::string current = platform::TheFolders().CurrentFolder();
    StartAt(RootOf(start.empty() ? current : start, drives));
    if (!start.empty() || current == m_listed)
        return;
    try {
        GoTo(current);
    } catch (const runtime::RuntimeError &) {
        // The current folder of the process does not exist: the window stays at the root.
    }
}

// Lists the root of a drive, or the root of the file system when the drive cannot be read.
void ExportFolder::StartAt(const std::string &drive)
{
    try {
        GoTo(drive);
    } catch (const runtime::RuntimeError &) {
        if (IsRoot(drive))
            throw;
        GoTo(std::string(1, runtime::PathSeparator));
    }
}

void ExportFolder::GoTo(const std::string &folder, const std::string &selectedName)
{
    if (m_waiting)
        return;
    const auto disable = [this] {
        m_waiting = true;
        EnableChoices(false);
    };
    platform::FolderContents contents =
        platform::TheFolders().List(folder, {}, platform::WaitWithEvents(disable));
    if (std::exchange(m_waiting, false))
        EnableChoices(true);
    if (contents.answer != platform::FolderAnswer::Listed)
        ThrowNoFolder(folder, contents.answer);

    std::vector<std::string> names;
    for (platform::SubFolder &found : contents.folders)
        if (!found.name.starts_with('.'))
            names.push_back(std::move(found.name));
    SortAsListsDo(names);
    {
        const ui::ListUpdate update(Dirs);
        Dirs.ClearRows();
        Dirs.SetSubItemKeys({"Name"});
        if (!IsRoot(folder))
            Dirs.AddRow(kAbove, "", "open", {&kAbove, 1});
        for (const std::string &found : names) {
            const std::string_view shown = found;
            Dirs.AddRow(found, "", "closed", {&shown, 1});
        }
    }
    m_listed = folder;
    const std::string drive = RootOf(folder, Drives.Items());
    const auto place = std::find(Drives.Items().begin(), Drives.Items().end(), drive);
    SetPath(folder);
    Drives.SetListIndex(static_cast<int>(place - Drives.Items().begin()));
    const ui::RowId row = selectedName.empty() ? ui::kNoRow : Dirs.Find(selectedName);
    if (row != ui::kNoRow) {
        Dirs.SelectOnly(row);
        RowChosen();
    }
}

void ExportFolder::SetPath(const std::string &path)
{
    m_path = path;
    txtPath.SetText(path);
    cmdDelete.SetEnabled(!IsRoot(path));
}

void ExportFolder::EnableChoices(bool enabled)
{
    for (ui::Area *control : std::initializer_list<ui::Area *>{&Drives, &Dirs, &cmdCreate,
                                                               &cmdDelete, &cmdOk, &cmdCancel})
        control->SetEnabled(enabled);
}

// Another drive was chosen, by the user or by GoTo, which lists that folder already.
void ExportFolder::DriveChosen()
{
    const std::string drive = Drives.Text();
    if (m_waiting || drive.empty() || RootOf(m_listed, Drives.Items()) == drive)
        return;
    try {
        GoTo(drive);
    } catch (const runtime::RuntimeError &) {
        const auto &drives = Drives.Items();
        const auto before = std::find(drives.begin(), drives.end(), RootOf(m_listed, drives));
        Drives.SetListIndex(static_cast<int>(before - drives.begin()));
        throw;
    }
}

void ExportFolder::RowChosen()
{
    const ui::RowId row = Dirs.SelectedItem();
    const std::string chosen(row == ui::kNoRow ? kAbove : Dirs.Key(row));
    SetPath(chosen == kAbove ? m_listed : runtime::JoinPath(m_listed, chosen));
}

void ExportFolder::EnterRow()
{
    const ui::RowId row = Dirs.SelectedItem();
    if (row == ui::kNoRow)
        return;
    if (Dirs.Key(row) == kAbove)
        GoUp();
    else
        GoTo(runtime::JoinPath(m_listed, Dirs.Key(row)));
}

void ExportFolder::GoUp()
{
    GoTo(runtime::ParentFolder(m_listed), runtime::GetFileName(m_listed));
}

void ExportFolder::CreateFolder()
{
    const auto answer = platform::TheMachine().desktop->InputBox("Type the name of the new folder",
                                                                 "Folder Name", "New Folder Name");
    if (!answer || answer->empty())
        return;
    const std::string path = runtime::JoinPath(m_path, *answer);
    if (const int reason = platform::TheFolders().MakeFolder(path); reason != 0)
        throw runtime::FileError(reason, path);
    GoTo(m_path, *answer);
}

// Deletes the folder only if it is empty.
void ExportFolder::DeleteFolder()
{
    const std::string path = m_path;
    if (const int reason = platform::TheMachine().files->RemoveFolder(path); reason != 0)
        throw runtime::RuntimeError(runtime::kPathFileAccess,
                                    runtime::FileError(reason, path).description);
    GoTo(runtime::ParentFolder(path));
}

void ExportFolder::Accept()
{
    selected = runtime::UpperText(m_path.substr(0, 1)) + m_path.substr(1);
    ui::Close(*this);
}

std::string SelectDir(const std::string &start)
{
    ExportFolder window;
    window.start = start;
    ui::ShowModal(window);
    return window.selected;
}

} // namespace browser
