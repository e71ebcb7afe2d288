#include "browser/filecommands.h"

#include "browser/exportfiles.h"
#include "browser/exportfolder.h"
#include "browser/fieldtree.h"
#include "browser/itemlist.h"
#include "browser/webpanel.h"
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/language.h"
#include "shell/preferences/failuremail.h"
#include "shell/settings.h"

#include <cerrno>

namespace browser
{

namespace
{

std::string Message(std::string_view defaultText, std::string_view key)
{
    return shell::GetLanguageText(defaultText, key, "Messages");
}

// --- Add File --------------------------------------------------------------------------------

void MailReport(const std::string &actions, const std::string &reason)
{
    platform::TheDesktop().EmptyClipboard();
    platform::TheDesktop().SetClipboardText(shell::ComposeBugReport(actions, reason));
    shell::EmailBugReport();
}

void OfferMail(const std::string &reason)
{
    const std::string question =
        Message("The file could not be added. If you think this is a bug, please%0Asend me an "
                "email with the reason why it cannot be added%0A%0AWould you like to send me an "
                "email now?",
                "EmailError");
    if (platform::TheDesktop().MessageBox(shell::WithLineBreaks(question),
                                          platform::Buttons::YesNo) != platform::Answer::Yes)
        return;
    const std::optional<std::string> actions = platform::TheDesktop().InputBox(
        Message("Please input as much information as you can explaining what led you to this error",
                "InputInformation"),
        Message("What did you do?", "WhatDidYouDo"), "");
    if (actions && !actions->empty()) {
        MailReport(*actions, reason);
        return;
    }
    const std::string words =
        Message("Sorry... You've enter no actions, I cannot guess what you've done%0Ato get this "
                "error. If you want me to analyse it you should input what%0Ayou've done.",
                "NoInfoTyped");
    platform::TheDesktop().MessageBox(shell::WithLineBreaks(words), platform::Buttons::Ok,
                                      "No actions", platform::BoxIcon::Exclamation);
}

// --- Duplicate entry -------------------------------------------------------------------------

// Reads the tags of a file. Errors: FileError when it cannot be read.
metadata::ID3v2Tag ReadTags(const std::string &path)
{
    metadata::SongInfo info = metadata::ReadSongInfo(path);
    if (const int failure = metadata::LastReadFailure(); failure != 0)
        throw runtime::FileError(failure, path);
    catalogue::PutTagsTogether(info);
    return info.id3v2;
}

// --- Rename ----------------------------------------------------------------------------------

// Whether both are names of the same file, and not two links: on a file system that ignores letter
// case, the same name in other letter case.
bool IsOtherCaseOfName(const std::string &from, const std::string &to)
{
    platform::FileIdentity one;
    platform::FileIdentity other;
    return runtime::EqualText(from, to) && platform::TheFiles().Identify(from, one) == 0 &&
           platform::TheFiles().Identify(to, other) == 0 && one.device == other.device &&
           one.inode == other.inode;
}

// Renames the file. Returns: an errno, 0 on success.
int RenameOnDisk(const std::string &from, const std::string &to)
{
    int reason = platform::TheFiles().RenameNew(from, to);
    if (reason == EEXIST && IsOtherCaseOfName(from, to))
        reason = platform::TheFiles().Rename(from, to);
    if (reason == 0) {
        platform::TheFiles().FlushFolderOf(to);
        if (runtime::GetFolderPath(from) != runtime::GetFolderPath(to))
            platform::TheFiles().FlushFolderOf(from);
    }
    return reason;
}

runtime::RuntimeError RenameError(int reason, const std::string &from, const std::string &to)
{
    return runtime::FileError(reason, reason == EEXIST ? to : from + " -> " + to);
}

// Changes the path in all rows of the file. Returns: the reason of a failure, else an empty text.
std::string RenameRows(const std::string &from, const std::string &to)
{
    catalogue::ExecuteWithValues("UPDATE MP3s SET Path = ? WHERE Path = ?", catalogue::kUpdate,
                                 {to, from});
    return catalogue::DataAccess->Succeeded ? std::string() : catalogue::DataAccess->ErrorMessage;
}

// Changes the path in the row of the list that still has the old one.
void ShowNewPath(MainForm &form, const std::string &key, const std::string &from,
                 const std::string &to)
{
    const ui::RowId row = form.LV.Find(key);
    if (row == ui::kNoRow || PathOfRow(form.LV, row) != from)
        return;
    form.LV.SetSubItem(row, "Path", to);
    ShowSelectedItemInfo(form.LV, form);
}

} // namespace

std::optional<std::string> ChooseMP3(std::string_view title, std::string_view kindOfFile)
{
    const std::vector<platform::FileFilter> filters{{std::string(kindOfFile), "*.mp3"}};
    std::optional<std::string> file =
        platform::TheDesktop().OpenDialog(title, filters, shell::GetPreference("MP3 Directory"));
    return file && !file->empty() ? file : std::nullopt;
}

void AddFile(MainForm &form)
{
    const std::optional<std::string> file =
        ChooseMP3(shell::GetLanguageText("Select the MP3 file", "MP3Select", "CommonDialogs"),
                  shell::GetLanguageText("MP3 Files", "MP3Files", "TypesOfFile"));
    if (!file)
        return;
    std::string reason;
    const std::int16_t result = catalogue::AddOrUpdateMP3(*file, reason);
    if (result == catalogue::kAdded || result == catalogue::kUntagged)
        RefreshTree(form);
    if (result == catalogue::kUntagged)
        platform::TheDesktop().MessageBox(reason +
                                          "\rThis means it will only be found on the path's node");
    if (result == catalogue::kFailed)
        OfferMail(reason);
}

void DuplicateEntry(ui::KeyedList &list)
{
    const std::string path = SelectedPath(list);
    if (path.empty())
        return;
    const metadata::ID3v2Tag tag = ReadTags(path);
    const std::string artist = metadata::TextOf(tag.kind, tag.Artist);
    const std::optional<std::string> artists =
        platform::TheDesktop().InputBox("Type the names of the artists", "Artist' Names", artist);
    if (!artists || artists->empty())
        return;
    std::vector<catalogue::Value> values = catalogue::TagValues(tag, metadata::GenreField(tag));
    values[1] = *artists;
    values.emplace_back(path);
    values.emplace_back(std::int64_t{1});
    catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
    if (catalogue::DataAccess->Succeeded)
        platform::TheDesktop().MessageBox("The MP3 was duplicated correctly", platform::Buttons::Ok,
                                          "Success");
    else
        platform::TheDesktop().MessageBox("The MP3 could not be duplicated.\r\rReason:\r" +
                                              catalogue::DataAccess->ErrorMessage,
                                          platform::Buttons::Ok, "Error");
}

void RenameFile(MainForm &form)
{
    const std::string from = SelectedPath(form.LV);
    if (from.empty())
        return;
    const std::string key(form.LV.Key(form.LV.SelectedItem()));
    const std::optional<std::string> name = platform::TheDesktop().InputBox(
        "Type the name of the new file", "New Name", runtime::GetFileName(from));
    if (!name || name->empty())
        return;
    const std::string to = runtime::GetFolderPath(from) + *name;
    if (to == from)
        return;
    if (const int reason = RenameOnDisk(from, to); reason != 0)
        throw RenameError(reason, from, to);
    const std::string failure = RenameRows(from, to);
    if (failure.empty()) {
        ShowNewPath(form, key, from, to);
        return;
    }
    const int reason = RenameOnDisk(to, from);
    platform::TheDesktop().MessageBox(failure, platform::Buttons::Ok, {},
                                      platform::BoxIcon::Exclamation);
    if (reason != 0)
        throw RenameError(reason, to, from);
}

void InstallFileCommands()
{
    MainForm &form = frmMain();
    RegisterCommand("submnuAddFile", [&form] { AddFile(form); });
    RegisterCommand("submnuDuplicateEntry",
                    [&form] { DuplicateEntry(form.inPopupClick ? PopupList(form) : form.LV); });
    RegisterCommand("submnuRename", [&form] { RenameFile(form); });
    for (const char *name : {"submnuExport", "cp_Export"})
        RegisterCommand(name, [&form] { ExportFiles(form, ExportList(form), SelectDir); });
}

} // namespace browser
