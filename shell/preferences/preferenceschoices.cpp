#include "shell/preferences/preferenceschoices.h"

#include "browser/fieldtree.h"
#include "browser/mainform.h"
#include "catalogue/regeneration.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/preferences/folderlook.h"
#include "shell/settings.h"

namespace shell
{

namespace
{

std::string LoadKey(std::size_t field)
{
    return std::string("Load ").append(FieldNames[field]);
}

// While one exists, the window shows a regeneration that was started in it: its own progress bar
// and the name of the file, and all choices are disabled.
class RunDisplay
{
public:
    explicit RunDisplay(PreferencesChoices &form) : m_form(form)
    {
        m_form.regenerating = true;
        EnableChoices(m_form, false);
        m_form.PBar.SetValue(0);
        m_form.PBar.SetVisible(true);
        m_form.lblProgress.SetVisible(true);
        catalogue::TheRegenerationControls().Progress =
            [this](std::string_view line, std::int64_t value, std::int64_t maximum) {
                if (m_before) // the main window shows the progress too
                    m_before(line, value, maximum);
                m_form.lblProgress.SetCaption(line);
                m_form.PBar.SetMax(maximum);
                m_form.PBar.SetValue(value);
            };
    }
    ~RunDisplay()
    {
        catalogue::TheRegenerationControls().Progress = m_before;
        m_form.lblProgress.SetCaption("");
        m_form.lblProgress.SetVisible(false);
        m_form.PBar.SetVisible(false);
        EnableChoices(m_form, true);
        m_form.regenerating = false;
    }
    RunDisplay(const RunDisplay &) = delete;
    RunDisplay &operator=(const RunDisplay &) = delete;

private:
    PreferencesChoices &m_form;
    decltype(catalogue::RegenerationControls::Progress) m_before =
        catalogue::TheRegenerationControls().Progress;
};

bool HasChosenAnotherFolder(const PreferencesChoices &form)
{
    return (form.standIn.empty() || form.DirList != form.standIn) &&
           runtime::UpperText(form.DirList) != runtime::UpperText(TheGlobals().MP3Directory);
}

void ApplyFolder(PreferencesChoices &form)
{
    if (!HasChosenAnotherFolder(form))
        return;
    TheGlobals().MP3Directory = form.DirList;
    TheGlobals().DeleteBeforeAppend = form.chkDeleteTable.Checked();
    {
        const RunDisplay shown(form);
        catalogue::ListRefresh(false);
    }
    form.standIn.clear();
    if (!catalogue::LastRegeneration().stopped)
        browser::LoadTreeView(browser::frmMain(), "");
}

// Stores the folder. When the stored folder is missing and DirList shows a substitute, the setting
// is not changed.
void SaveFolder(const PreferencesChoices &form)
{
    if (form.standIn.empty() || form.DirList != form.standIn)
        SavePreference("MP3 Directory", form.DirList);
    else if (!StoredFolder().empty())
        SavePreference("MP3 Directory", StoredFolder());
}

void SaveSettings(const PreferencesChoices &form)
{
    SaveFlagPreference("RefreshAtStartUp", form.Reload.Checked());
    SaveFolder(form);
    SaveFlagPreference("Back Up Files", form.chkDoBackUp.Checked());
    SaveFlagPreference("Update DB after editing", form.chkUpdateDB.Checked());
    SaveFlagPreference("Show Lyrics automatically", form.chkAutoShow.Checked());
    SaveFlagPreference("Delete Before Append", form.chkDeleteTable.Checked());
    SaveFlagPreference("AutoCheckNewerVersion", form.chkAutoCheck.Checked());
    Globals &globals = TheGlobals();
    globals.BackUpFiles = form.chkDoBackUp.Checked();
    globals.UpdateDBAfterEditing = form.chkUpdateDB.Checked();
    globals.ShowLyricsAutomatically = form.chkAutoShow.Checked();
    globals.DeleteBeforeAppend = form.chkDeleteTable.Checked();
    globals.AutoCheckNewerVersion = form.chkAutoCheck.Checked();
}

// For each field: stores its key, then builds or removes its group in the tree when the flag
// differs.
void ApplyFields(const PreferencesChoices &form)
{
    for (std::size_t field = 0; field < form.LoadTreeOpt.size(); field++) {
        const bool load = form.LoadTreeOpt[field].Checked();
        SaveFlagPreference(LoadKey(field), load);
        if (load == TheGlobals().LoadField[field])
            continue;
        TheGlobals().LoadField[field] = load;
        browser::LoadTreeView(browser::frmMain(), FieldNames[field]);
    }
}

} // namespace

void EnableChoices(PreferencesControls &form, bool enabled)
{
    form.tvwDirTree.SetEnabled(enabled);
    form.txtPath.SetEnabled(enabled);
    form.cmdOk.SetEnabled(enabled);
    form.cmdApply.SetEnabled(enabled);
}

void ShowFlags(PreferencesChoices &form)
{
    form.chkDoBackUp.SetChecked(GetFlagPreference("Back Up Files"));
    form.chkUpdateDB.SetChecked(GetFlagPreference("Update DB after editing"));
    form.chkAutoShow.SetChecked(GetFlagPreference("Show Lyrics automatically"));
    form.chkDeleteTable.SetChecked(GetFlagPreference("Delete Before Append"));
    form.chkAutoCheck.SetChecked(GetFlagPreference("AutoCheckNewerVersion"));
    for (std::size_t field = 0; field < form.LoadTreeOpt.size(); field++)
        form.LoadTreeOpt[field].SetChecked(GetFlagPreference(LoadKey(field)));
}

void ApplyChoices(PreferencesChoices &form)
{
    Globals &globals = TheGlobals();
    const std::string folderBefore = globals.MP3Directory;
    const bool deleteBefore = globals.DeleteBeforeAppend;
    try {
        ApplyFolder(form);
        SaveSettings(form);
        ApplyFields(form);
    } catch (const runtime::RuntimeError &) {
        globals.MP3Directory = folderBefore;
        globals.DeleteBeforeAppend = deleteBefore;
        throw;
    }
}

} // namespace shell
