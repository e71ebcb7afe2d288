#include "browser/exportfiles.h"

#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formlayout.h"
#include "browser/itemlist.h"
#include "metadata/songcopy.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <map>
#include <vector>

namespace browser
{

namespace
{

// The files of the selected rows, in the order shown.
std::vector<std::string> SelectedPaths(const ui::KeyedList &list)
{
    std::vector<std::string> paths;
    for (int i = 0; i < list.Count(); ++i) {
        const ui::RowId row = list.RowAt(i);
        if (!list.IsSelected(row))
            continue;
        if (std::string path = PathOfRow(list, row); !path.empty())
            paths.push_back(std::move(path));
    }
    return paths;
}

std::int64_t SizeOf(const std::string &path)
{
    platform::FileIdentity identity;
    return platform::TheFiles().Identify(path, identity) == 0 ? identity.sizeBytes : 0;
}

// The number of bytes by which the target grows: of several files of one name only the last one
// stays, and an existing file of that name is replaced.
std::int64_t RoomNeeded(const std::vector<std::string> &paths, const std::string &target)
{
    std::map<std::string, std::int64_t> sizes;
    for (const std::string &path : paths)
        sizes[runtime::GetFileName(path)] = SizeOf(path);
    std::int64_t needed = 0;
    for (const auto &[name, size] : sizes)
        needed += size - SizeOf(runtime::JoinPath(target, name));
    return needed;
}

// "12.3 MB", rounded up or down.
std::string Megabytes(std::int64_t bytes, bool up)
{
    constexpr std::int64_t kTenth = 100'000;
    const std::int64_t tenths = (bytes + (up ? kTenth - 1 : 0)) / kTenth;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

// Shows a box when there is not enough room. Returns: whether there is enough, or the free room is
// not known.
bool HasRoom(const std::vector<std::string> &paths, const std::string &target)
{
    const std::int64_t free = platform::TheFiles().FreeBytes(target);
    const std::int64_t needed = RoomNeeded(paths, target);
    if (free < 0 || needed <= free)
        return true;
    std::string words = shell::GetLanguageText(
        "There is too little room in $Folder$: $Needed$ are needed, $Free$ are free. Nothing was "
        "copied.",
        "TooLittleRoom", "Status");
    words = runtime::ReplaceFirst(words, "$Needed$", Megabytes(needed, true));
    words = runtime::ReplaceFirst(words, "$Free$", Megabytes(free, false));
    platform::TheDesktop().MessageBox(runtime::ReplaceFirst(words, "$Folder$", target),
                                      platform::Buttons::Ok, {}, platform::BoxIcon::Exclamation);
    return false;
}

void EmptyPanels(MainForm &form)
{
    form.SB.SetText("Playing", "");
    form.SB.SetText("Blank", "");
}

// While one exists, lists and commands are disabled, and the progress bar is visible.
class ExportMark
{
public:
    ExportMark(MainForm &form, ui::KeyedList &list, std::size_t files) : m_form(form), m_list(list)
    {
        m_form.exporting = true;
        m_form.exportStopped = false;
        EnableLists(false);
        ShowProgressBar(m_form);
        m_form.PBar.SetValue(0);
        m_form.PBar.SetMax(static_cast<std::int64_t>(files));
        m_form.PBar.SetVisible(true);
    }
    ~ExportMark()
    {
        EmptyPanels(m_form);
        m_form.PBar.SetVisible(false);
        m_form.exporting = false;
        EnableLists(true);
    }
    ExportMark(const ExportMark &) = delete;
    ExportMark &operator=(const ExportMark &) = delete;

private:
    void EnableLists(bool enabled)
    {
        m_form.TV.SetEnabled(enabled);
        m_form.LV.SetEnabled(enabled);
        m_list.SetEnabled(enabled);
        UpdateCommands(m_form);
    }

    MainForm &m_form;
    ui::KeyedList &m_list; // the one whose files are exported
};

void CopyFile(const std::string &path, const std::string &target)
{
    std::string real;
    if (const int reason = platform::TheFiles().RealPath(path, real); reason != 0)
        throw runtime::FileError(reason, path);
    try {
        metadata::CopySong(real, runtime::JoinPath(target, runtime::GetFileName(path)));
    } catch (const runtime::RuntimeError &error) {
        throw runtime::RuntimeError(error.number, path + ": " + error.description);
    }
}

void CopyAll(MainForm &form, ui::KeyedList &list, const std::vector<std::string> &paths,
             const std::string &target)
{
    const ExportMark mark(form, list, paths.size());
    platform::TheDesktop().DoEvents();
    for (const std::string &path : paths) {
        if (form.exportStopped || platform::IsEndRequested())
            break;
        form.SB.SetText("Playing", "Exporting: " +
                                       runtime::Replace(runtime::GetFileName(path), " & ", " && "));
        form.SB.SetText("Blank",
                        std::to_string(form.PBar.Value()) + "/" + std::to_string(form.PBar.Max()));
        CopyFile(path, target);
        form.PBar.SetValue(form.PBar.Value() + 1);
        platform::TheDesktop().DoEvents();
    }
}

} // namespace

ui::KeyedList &ExportList(MainForm &form)
{
    return form.searchList != nullptr ? *form.searchList : form.LV;
}

void ExportFiles(MainForm &form, ui::KeyedList &list, const FolderQuestion &selectDir)
{
    if (form.exporting)
        return;
    form.exportTarget = selectDir(form.exportTarget);
    if (form.exportTarget.empty())
        return;
    const std::vector<std::string> paths = SelectedPaths(list);
    const std::string target = form.exportTarget;
    if (!HasRoom(paths, target))
        return;
    try {
        CopyAll(form, list, paths, target);
    } catch (const runtime::RuntimeError &) {
        if (form.closePending)
            CloseMainForm(form);
        throw;
    }
    if (form.closePending) {
        CloseMainForm(form);
        return;
    }
    platform::TheDesktop().DoEvents();
}

} // namespace browser
