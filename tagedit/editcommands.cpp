#include "tagedit/editcommands.h"

#include "browser/filecommands.h"
#include "browser/itemlist.h"
#include "browser/webpanel.h"
#include "metadata/genres.h"
#include "metadata/tagtext.h"
#include "runtime/codepage.h"
#include "tagedit/tageditor.h"

#include <optional>

namespace tagedit
{

namespace
{

// This title is not in the language files: the command opens any file.
constexpr std::string_view kTitle = "Select the MP3 file";
constexpr std::string_view kKindOfFile = "MP3 Files";

// The field of the ID3v2 record, which is of that kind, else that of the ID3v1 record.
std::string ShownField(metadata::TextKind kind, const std::string &id3v2, const std::string &id3v1)
{
    return id3v2.empty() ? runtime::TextOfBytes(metadata::UsedText(id3v1))
                         : metadata::TextOf(kind, id3v2);
}

} // namespace

void EditFile(const std::string &path)
{
    TagEditor editor;
    editor.File = path;
    editor.saved = [](const metadata::ID3v1Tag &id3v1, const metadata::ID3v2Tag &id3v2) {
        ShowEdited(browser::frmMain(), id3v1, id3v2);
    };
    LoadTags(editor); // before the window is shown: a file that cannot be read opens none
    ui::ShowModal(editor);
}

void ShowFileInfo(const ui::KeyedList &list)
{
    const std::string path = browser::SelectedPath(list);
    if (!path.empty())
        EditFile(path);
}

void ShowEdited(browser::MainForm &form, const metadata::ID3v1Tag &id3v1,
                const metadata::ID3v2Tag &id3v2)
{
    ui::KeyedList &list = form.LV;
    const ui::RowId row = list.SelectedItem();
    if (row == ui::kNoRow || browser::PathOfRow(list, row).empty())
        return;
    const auto show = [&](std::string_view column, const std::string &ofID3v2,
                          const std::string &ofID3v1) {
        list.SetSubItem(row, column, ShownField(id3v2.kind, ofID3v2, ofID3v1));
    };
    show("Album", id3v2.Album, id3v1.Album);
    show("Artist", id3v2.Artist, id3v1.Artist);
    show("Comment", id3v2.Comment, id3v1.Comment);
    const bool isUtf8 = id3v2.kind == metadata::TextKind::Utf8;
    show("Genre", metadata::GenreField(id3v2),
         isUtf8 ? metadata::GenreWords(id3v1) : metadata::GenreName(id3v1.Genre));
    show("Title", id3v2.Title, id3v1.Title);
    show("Year", id3v2.Year, id3v1.Year);
    browser::ShowSelectedItemInfo(list, form);
}

void Install()
{
    browser::MainForm &form = browser::frmMain();
    browser::RegisterCommand("submnuTagEditor", [] {
        if (const std::optional<std::string> file = browser::ChooseMP3(kTitle, kKindOfFile))
            EditFile(*file);
    });
    browser::RegisterCommand("submnuFileInfo", [&form] { ShowFileInfo(form.LV); });
    browser::RegisterCommand("cp_Info", [&form] { ShowFileInfo(browser::PopupList(form)); });
}

} // namespace tagedit
