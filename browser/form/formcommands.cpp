#include "browser/form/formcommands.h"

#include "browser/fieldtree.h"
#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formlayout.h"
#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/preferences/unicodeoffer.h"
#include "shell/settings.h"

namespace browser
{

namespace
{

constexpr std::string_view kLanguageExtension = ".qlt";

void ToggleWebStyle(MainForm &form)
{
    ui::Command &entry = *form.FindMenu("submnuWebStyle");
    entry.SetChecked(!entry.Checked());
    form.WebStyleOn = entry.Checked();
    shell::TheGlobals().WebStyle = form.WebStyleOn;
    shell::SaveFlagPreference("WebStyle", form.WebStyleOn);
    ReDrawForm(form);
    AdjustPanelScroll(form.LV, form);
}

// The rows still have the texts that were read before, so the user is offered to read all songs
// again.
void ToggleUnicodeTags(MainForm &form)
{
    shell::SaveUnicodeTags(!shell::TheGlobals().UnicodeTags);
    shell::NoteUnicodeChoice();
    UpdateCommands(form);
    const platform::Answer answer = platform::TheMachine().desktop->MessageBox(
        shell::GetLanguageText("The catalogue shows the texts as they were read before. Would you "
                               "like to regenerate the database now?",
                               "Regenerate", "UnicodeTags"),
        platform::Buttons::YesNo);
    if (answer != platform::Answer::Yes)
        return;
    catalogue::AllowRegeneration();
    RegenerateAndLoad(form, true);
}

void ShowLanguageNote()
{
    platform::TheMachine().desktop->MessageBox(
        shell::GetLanguageText("The new language you set would start working the next time you "
                               "run this app.",
                               "NewLanguageSelected", "Status"));
}

void ChooseEnglish()
{
    try {
        shell::DeleteSetting(shell::kPreferences, "Language");
    } catch (const runtime::RuntimeError &) {
        // No language was chosen.
    }
    ShowLanguageNote();
}

void ChooseLanguage(const std::string &entryCaption)
{
    shell::SavePreference("Language", entryCaption + std::string(kLanguageExtension));
    ShowLanguageNote();
}

// Opens a web page below the base address that is in the catalogue.
void OpenPage(std::string_view page)
{
    const auto records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM Validations", catalogue::kSelect));
    if (catalogue::DataAccess == nullptr)
        return; // the program was ended while events ran during the statement
    if (records == nullptr || records->AtEnd())
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange,
                                    catalogue::DataAccess->ErrorMessage);
    const std::string address(records->Text("URL2Check"));
    shell::OpenAddress(address + std::string(page), "");
}

} // namespace

void RegisterOwnCommands(MainForm &form)
{
    RegisterCommand("submnuExit", [&form] { CloseMainForm(form); });
    RegisterCommand("submnuRegenerateDatabase", [&form] { RegenerateAndLoad(form, true); });
    RegisterCommand("submnuRefreshTree", [&form] { RefreshTree(form); });
    RegisterCommand("submnuWebStyle", [&form] { ToggleWebStyle(form); });
    RegisterCommand(
        "submnuUnicodeTags", [&form] { ToggleUnicodeTags(form); },
        [] { return !catalogue::IsRegenerating(); });
    RegisterCommand("submnuForums", [] { OpenPage("Forums/default.asp"); });
    RegisterCommand("submnuTutorials", [] { OpenPage("Tutorial%20Index.asp"); });
    RegisterCommand("submnuEnglish", ChooseEnglish);
}

void RegenerateAndLoad(MainForm &form, bool showProgress)
{
    if (catalogue::IsRegenerating())
        return;
    try {
        catalogue::ListRefresh(showProgress);
    } catch (const runtime::RuntimeError &) {
        if (form.closePending)
            UnloadMainForm(form);
        throw;
    }
    if (form.closePending)
        UnloadMainForm(form);
    else
        LoadTreeView(form, "");
}

bool Form_KeyDown(MainForm &form, int keyCode, bool alt)
{
    constexpr int kEscapeKey = 27;
    if (keyCode == kEscapeKey && form.exporting) {
        StopExport(form);
        return true;
    }
    if (keyCode != '3' || !alt)
        return false;
    if (CanRun("submnuFileInfo") && !form.exporting)
        RunHandler("submnuFileInfo");
    return true;
}

void BuildLanguageMenu(MainForm &form, const std::vector<std::string> &captions)
{
    form.FindMenu("hyLang")->SetVisible(!captions.empty());
    ui::Command *last = form.FindMenu(kFirstLanguage);
    last->SetVisible(!captions.empty());
    std::size_t index = 0;
    for (const std::string &caption : captions) {
        // Adds one more entry, unless the last one has no caption yet.
        if (!last->Caption().empty()) {
            const std::string next = "submnuLng(" + std::to_string(++index) + ")";
            last = form.FindMenu(next);
            if (last == nullptr)
                last = &form.menu.emplace_back(next);
        }
        last->SetCaption(ui::CaptionOf(caption));
        last->SetVisible(true);
        last->SetEnabled(true);
        RegisterCommand(last->name, [caption] { ChooseLanguage(caption); });
    }
}

} // namespace browser
