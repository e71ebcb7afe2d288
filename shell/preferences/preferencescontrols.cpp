#include "shell/preferences/preferencescontrols.h"

#include <cstddef>
#include <string>

namespace shell
{

namespace
{

// The title depends on the menu's language and is set by the load.
constexpr ui::Caption kCaptions[] = {
    {"frmMP3", "Preferences", "MP3Directory", "MP3 Directory"},
    {"lblFolder", "Preferences", "Folder", "&Folder:"},
    {"lblFolders", "Preferences", "Folders", "Fol&ders:"},
    {"lblFiles", "Preferences", "FilesOfFolder", "&MP3 files:"},
    {"chkDeleteTable", "Preferences", "DeleteTableBeforeAppend", "Delete table before append"},
    {"frmEditingTags", "Preferences", "EditingTags", "Editing Tags"},
    {"chkDoBackUp", "Preferences", "BackFilesbeforeEditing", "Back Files before editing"},
    {"chkUpdateDB", "Preferences", "UpdateDBAfterEditing", "Update DB after editing"},
    {"frmSeekBy", "Preferences", "Controls", "Seek By"},
    {"frmAutomatic", "Preferences", "Automatic", "Automatic"},
    {"chkAutoCheck", "Preferences", "AutoCheckForNewerVersion",
     "Check for newer version at startup"},
    {"Reload", "Preferences", "GenerateDBAtStartup", "Generate DB at startup"},
    {"chkAutoShow", "Preferences", "ShowLyricsWhenSongChanges", "Show Lyrics when song changes"},
    {"cmdOk", "Preferences", "OkButton", "&OK"},
    {"cmdCancel", "Preferences", "CancelButton", "&Cancel"},
    {"cmdApply", "Preferences", "ApplyButton", "&Apply"},
    {"LoadTreeOpt(0)", "ColumnHeaders", "Title", "Title"},
    {"LoadTreeOpt(1)", "ColumnHeaders", "Artist", "Artist"},
    {"LoadTreeOpt(2)", "ColumnHeaders", "Album", "Album"},
    {"LoadTreeOpt(3)", "ColumnHeaders", "Year", "Year"},
    {"LoadTreeOpt(4)", "ColumnHeaders", "Comment", "Comment"},
    {"LoadTreeOpt(5)", "ColumnHeaders", "Genre", "Genre"},
    {"LoadTreeOpt(6)", "ColumnHeaders", "List", "List"},
};

// Inside the frame: room for the folders and the files side by side, still smaller than a small
// screen.
constexpr int kWidthTwips = 10800, kHeightTwips = 6600;

void AddMembers(PreferencesControls &form)
{
    ui::Frame *const folder = &form.frmMP3;
    form.Add("frmMP3", form.frmMP3);
    form.Add("lblFolder", form.lblFolder, {.in = folder});
    form.Add("txtPath", form.txtPath, {.in = folder, .label = &form.lblFolder});
    form.Add("lblFolders", form.lblFolders, {.in = folder});
    form.Add("tvwDirTree", form.tvwDirTree, {.in = folder, .label = &form.lblFolders});
    form.Add("lblFiles", form.lblFiles, {.in = folder});
    form.Add("LV", form.LV, {.in = folder, .label = &form.lblFiles});
    form.Add("chkDeleteTable", form.chkDeleteTable, {.in = folder});
    form.Add("frmEditingTags", form.frmEditingTags);
    form.Add("chkDoBackUp", form.chkDoBackUp, {.in = &form.frmEditingTags});
    form.Add("chkUpdateDB", form.chkUpdateDB, {.in = &form.frmEditingTags});
    form.Add("frmSeekBy", form.frmSeekBy);
    for (std::size_t field = 0; field < form.LoadTreeOpt.size(); field++)
        form.Add("LoadTreeOpt(" + std::to_string(field) + ")", form.LoadTreeOpt[field],
                 {.in = &form.frmSeekBy});
    form.Add("frmAutomatic", form.frmAutomatic);
    form.Add("chkAutoCheck", form.chkAutoCheck, {.in = &form.frmAutomatic});
    form.Add("Reload", form.Reload, {.in = &form.frmAutomatic});
    form.Add("chkAutoShow", form.chkAutoShow, {.in = &form.frmAutomatic});
    form.Add("lblProgress", form.lblProgress);
    form.Add("PBar", form.PBar);
    form.Add("cmdOk", form.cmdOk);
    form.Add("cmdCancel", form.cmdCancel);
    form.Add("cmdApply", form.cmdApply);
    form.Add("tmrUnload", form.tmrUnload);
}

ui::Layout LayoutOf(PreferencesControls &form)
{
    auto &field = form.LoadTreeOpt;
    const ui::Layout folder = ui::Inside(
        form.frmMP3,
        ui::Column({ui::Row({form.lblFolder, ui::Filled(form.txtPath)}),
                    ui::Filled(ui::Row(
                        {ui::Filled(ui::Column({form.lblFolders, ui::Filled(form.tvwDirTree)})),
                         ui::Filled(ui::Column({form.lblFiles, ui::Filled(form.LV)}))})),
                    form.chkDeleteTable}));
    const ui::Layout flags = ui::Column(
        {ui::Inside(form.frmEditingTags, ui::Column({form.chkDoBackUp, form.chkUpdateDB})),
         ui::Inside(form.frmSeekBy, ui::Grid(2, {field[0], field[1], field[2], field[3], field[4],
                                                 field[5], field[6]})),
         ui::Inside(form.frmAutomatic,
                    ui::Column({form.chkAutoCheck, form.Reload, form.chkAutoShow})),
         ui::Room()});
    return ui::Column({ui::Filled(ui::Row({ui::Filled(folder), flags})), form.lblProgress,
                       form.PBar,
                       ui::Row({ui::Room(), form.cmdOk, form.cmdCancel, form.cmdApply})});
}

} // namespace

PreferencesControls::PreferencesControls() : Form("frmPref", kCaptions)
{
    AddMembers(*this);
    layout = LayoutOf(*this);
    size = {0, 0, kWidthTwips, kHeightTwips};
    resizable = true;
    lblProgress.elided = true;
    acceptButton = &cmdOk;
    cancelButton = &cmdCancel;
}

} // namespace shell
