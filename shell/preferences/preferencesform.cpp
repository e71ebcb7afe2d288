// The controls of frmPref, and its command.
#include "browser/commands.h"
#include "catalogue/regeneration.h"
#include "shell/globals.h"
#include "shell/preferences/preferences.h"

namespace shell
{

namespace
{

// Inside the frame: room for the folders and the files side by side, still smaller than a small
// screen.
constexpr int kWidthTwips = 10800, kHeightTwips = 6600;

void AddMembers(PreferencesForm &form)
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

ui::Layout LayoutOf(PreferencesForm &form)
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

PreferencesForm::PreferencesForm() : Form("frmPref", {})
{
    for (std::size_t field = 0; field < LoadTreeOpt.size(); field++)
        LoadTreeOpt[field].SetCaption(FieldNames[field]);
    AddMembers(*this);
    layout = LayoutOf(*this);
    size = {0, 0, kWidthTwips, kHeightTwips};
    resizable = true;
    lblProgress.elided = true;
    acceptButton = &cmdOk;
    cancelButton = &cmdCancel;
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
