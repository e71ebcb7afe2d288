#include "browser/form/formclose.h"

#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "ui/controls/form.h"

namespace browser
{

void CloseMainForm(MainForm &form)
{
    if (!ui::AskToCloseAll())
        return;
    if (catalogue::IsRegenerating()) {
        form.closePending = true;
        catalogue::StopRegeneration();
        return;
    }
    if (form.exporting) {
        form.closePending = true;
        StopExport(form);
        return;
    }
    UnloadMainForm(form);
}

void SavePlacement(const MainForm &form)
{
    shell::SaveNumberPreference("Initial TV Width", shell::TheGlobals().InitialTVWidth);
    const ui::Rect &place = form.maximised ? form.normal : form.window;
    shell::SaveNumberPreference("Width", place.width);
    shell::SaveNumberPreference("Height", place.height);
    shell::SaveNumberPreference("Top", place.top);
    shell::SaveNumberPreference("Left", place.left);
    shell::SaveSetting(shell::kWindowsSize, kMaximised, form.maximised ? "1" : "0");
}

void UnloadMainForm(MainForm &form)
{
    UnhookList(form);
    SavePlacement(form);
    form.logo.reset();
    form.cp.clear();
    ReleaseRegeneration();
    catalogue::DataAccess.reset();
    form.calls.unloadForms();
    form.calls.endProgram();
}

} // namespace browser
