#include "playlists/lists.h"

#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/disk/drives.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "player/winampmod.h"
#include "playlists/entryfiles.h"
#include "playlists/listfile.h"
#include "playlists/m3u.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "runtime/utf8.h"
#include "shell/apppath.h"
#include "shell/language.h"

#include <array>
#include <memory>
#include <optional>

namespace playlists
{

namespace
{

using browser::MainForm;
using catalogue::DataAccess;

const std::string kAll = "SELECT * FROM Lists ORDER BY LIST_Name";
const std::string kOne = "SELECT * FROM Lists WHERE LIST_Name = ?";
const std::string kAdd = "INSERT INTO Lists VALUES(?, ?)";
const std::string kRemove = "DELETE FROM Lists WHERE List_Name = ?";

struct State {
    std::unique_ptr<EntrySearch> search; // for the rows in LV
    std::uint64_t clearCount = 0;        // LV's number of clearings when the rows were added
    std::uint64_t openings = 0;          // how often a list was begun to be opened
};

State &TheState()
{
    static State state;
    return state;
}

void ShowBox(std::string_view words)
{
    platform::TheDesktop().MessageBox(words);
}

std::string NodeKey(std::string_view name)
{
    return "&" + std::string(name);
}

// Whether the program is to end while a question is open.
bool IsEnding()
{
    return DataAccess == nullptr || platform::IsEndRequested();
}

// The result of a statement about lists; null when the program has ended or the statement failed.
catalogue::RecordsetPtr ListsOf(const std::string &statement,
                                const std::vector<catalogue::Value> &values = {})
{
    if (DataAccess == nullptr)
        return nullptr;
    auto records =
        catalogue::Records(catalogue::ExecuteWithValues(statement, catalogue::kSelect, values));
    return DataAccess == nullptr || records == nullptr || !records->IsOpen() ? nullptr : records;
}

bool IsTaken(const std::string &name)
{
    const auto records = ListsOf(kOne, {name});
    return records != nullptr && !records->AtEnd();
}

// The name of the file without folder and without its last 4 characters.
std::string SuggestedName(const std::string &path)
{
    std::string name = runtime::GetFileName(path);
    for (int characters = 0; characters < 4 && !name.empty(); ++characters) {
        while (name.size() > 1 && runtime::ContinuesCharacter(name.back()))
            name.pop_back();
        name.pop_back();
    }
    return name;
}

// Asks for a name that is neither empty nor in use. Returns: nothing when the program ends.
std::optional<std::string> AskName(const std::string &path)
{
    std::string suggested = SuggestedName(path);
    while (!IsEnding()) {
        const std::string name =
            platform::TheDesktop()
                .InputBox(
                    shell::GetLanguageText("Type the name for this PlayList", "NameThePlaylist",
                                           "InputBox"),
                    shell::GetLanguageText("PlayList's Name", "NameThePlaylistTitle", "InputBox"),
                    suggested)
                .value_or("");
        if (name.empty() && platform::TheDesktop().InputWasClosed())
            break;
        if (name.empty())
            continue;
        if (!IsTaken(name))
            return IsEnding() ? std::nullopt : std::optional(name);
        suggested = name;
        ShowBox(shell::GetLanguageText("There is a playlist of this name already.",
                                       "PlayListNameTaken", "Messages"));
    }
    return std::nullopt;
}

// Runs a statement that changes the table. Returns: false when it failed; a box has shown the
// error.
bool Change(const std::string &statement, catalogue::StatementKind kind,
            const std::vector<catalogue::Value> &values)
{
    catalogue::ExecuteWithValues(statement, kind, values);
    if (DataAccess == nullptr)
        return false; // the program was ended while events ran during the statement
    if (!DataAccess->Succeeded)
        ShowBox(DataAccess->ErrorMessage);
    return DataAccess != nullptr && DataAccess->Succeeded;
}

// A drive as the beginning of a path: without the separator of the root.
std::string DriveOf(const std::string &path)
{
    platform::Drives *drives = platform::TheMachine().drives;
    std::string drive = drives == nullptr || path.empty() ? std::string() : drives->DriveOf(path);
    if (drive.ends_with(runtime::PathSeparator))
        drive.pop_back();
    return drive;
}

// The first two characters of the player's folder if they are a drive, else its mount point.
std::string PlayerDrive()
{
    const std::string folder = player::GetWinampFolder();
    return folder.size() > 1 && folder[1] == ':' ? folder.substr(0, 2) : DriveOf(folder);
}

std::string ColumnCaption(std::string_view key)
{
    return shell::GetLanguageText(key, key, "ColumnHeaders");
}

void AddColumns(ui::KeyedList &list)
{
    list.ClearColumns();
    list.AddColumn("Icon", "", 450);
    list.AddColumn("Denomination", ColumnCaption("Denomination"), 2400);
    list.AddColumn("Path", ColumnCaption("Path"), 2000);
    list.AddColumn("Non", "", 500);
}

// Adds the rows. Returns: for each the paths at which its file may be.
std::vector<std::vector<std::string>> AddRows(ui::KeyedList &list, const std::string &result,
                                              const ListPlace &place)
{
    std::vector<std::vector<std::string>> places;
    list.SetSubItemKeys({"Denomination", "Path"});
    for (const M3UEntry &entry : EntriesOfM3U(result)) {
        const std::string name =
            place.isUtf8 ? entry.denomination : runtime::TextOfBytes(entry.denomination);
        const std::string path = EntryPath(entry.path, place.folder, place.playerDrive);
        const std::array<std::string_view, 2> cells = {name, path};
        list.AddRow("/" + std::to_string(places.size()), "", "MP3", cells);
        places.push_back(PlacesOfEntry(entry.path, place));
    }
    return places;
}

void ShowEntries(MainForm &form, const std::string &listPath, std::string text)
{
    platform::Drives *drives = platform::TheMachine().drives;
    const ListPlace place{runtime::GetFolderPath(listPath), DriveOf(listPath), PlayerDrive(),
                          drives == nullptr ? std::vector<std::string>() : drives->Roots(),
                          runtime::IsUtf8(text)};
    std::string result;
    try {
        ParseM3UText(text, result);
    } catch (const runtime::RuntimeError &) {
        // An entry that is not an MP3 gets no row.
    }
    const ui::ListUpdate update(form.LV);
    form.LV.ClearRows();
    AddColumns(form.LV);
    form.LV.SetDimmedTip(
        shell::GetLanguageText("The file is not there.", "FileNotThere", "Status"));
    TheState().search = std::make_unique<EntrySearch>(AddRows(form.LV, result, place));
    TheState().clearCount = form.LV.ClearCount();
    form.tmrListFiles.SetEnabled(true);
}

} // namespace

void AddPlayList(MainForm &form)
{
    const std::optional<std::string> path = platform::TheDesktop().OpenDialog(
        shell::GetLanguageText("Select the PlayList file", "PlayListFile", "CommonDialogs"),
        {{"WinAmp PlayList (*.m3u)", "*.m3u"}}, shell::GetAppPath());
    if (!path || path->empty())
        return;
    const std::optional<std::string> name = AskName(*path);
    if (!name || !Change(kAdd, catalogue::kInsert, {*name, *path}))
        return;
    if (const ui::NodeId group = form.TV.Find("ByList"); group != ui::kNoNode)
        form.TV.TryAdd(group, NodeKey(*name), *name, "M3U");
}

bool RemovePlayList(MainForm &form, const std::string &name)
{
    if (DataAccess == nullptr || !Change(kRemove, catalogue::kDelete, {name}))
        return false;
    if (form.TV.Find(NodeKey(name)) != ui::kNoNode)
        form.TV.Remove(NodeKey(name));
    return true;
}

std::vector<std::string> PlayListNames()
{
    std::vector<std::string> names;
    const auto records = ListsOf(kAll);
    for (; records != nullptr && !records->AtEnd(); records->MoveNext())
        names.emplace_back(records->Text("List_Name"));
    return names;
}

bool ListPlayList(MainForm &form, std::string_view name)
{
    const std::uint64_t clearCount = form.LV.ClearCount(), opening = ++TheState().openings;
    const auto isLatest = [&form, clearCount, opening] {
        return !IsEnding() && form.LV.ClearCount() == clearCount && TheState().openings == opening;
    };
    const auto records = ListsOf(kOne, {std::string(name)});
    const std::string path =
        records == nullptr || records->AtEnd() ? "" : std::string(records->Text("LIST_Path"));
    platform::TheDesktop().SetPointer(platform::Pointer::Hourglass);
    platform::TheDesktop().DoEvents();
    if (!isLatest())
        return false;
    std::string text = ReadListFile(path);
    if (!isLatest())
        return false;
    if (text.empty()) {
        ShowBox(
            shell::GetLanguageText("The playlist is not ready", "PlayListNotReady", "Messages"));
        return isLatest();
    }
    ShowEntries(form, path, std::move(text));
    form.ImgIcon.SetImage("M3U");
    browser::LoadOtherImages(false, form);
    return true;
}

void ShowFoundEntries(MainForm &form)
{
    State &state = TheState();
    if (state.search == nullptr || form.LV.ClearCount() != state.clearCount) {
        StopLooking();
        form.tmrListFiles.SetEnabled(false);
        return;
    }
    constexpr int kPathSubItem = 2;
    std::optional<ui::ListUpdate> update; // the rows are sorted only once
    for (const FoundEntry &entry : state.search->Take()) {
        const auto row = static_cast<ui::RowId>(entry.entry);
        if (!entry.path) {
            form.LV.SetDimmed(row, true);
        } else if (*entry.path != form.LV.SubItem(row, "Path")) {
            if (form.LV.SortKey() == kPathSubItem && !update)
                update.emplace(form.LV);
            form.LV.SetSubItem(row, "Path", *entry.path);
        }
    }
    if (state.search->Done()) {
        StopLooking();
        form.tmrListFiles.SetEnabled(false);
    }
}

void StopLooking()
{
    TheState().search.reset();
}

} // namespace playlists
