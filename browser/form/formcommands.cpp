// The main form's commands: running them by name, its own handlers, keys, the language menu.
#include "browser/exportfiles.h"
#include "browser/fieldtree.h"
#include "browser/form/formhandlers.h"
#include "browser/itemkinds.h"
#include "browser/itemlist.h"
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

#include <algorithm>

namespace browser
{

namespace
{

constexpr std::string_view kLanguageExtension = ".qlt";
constexpr std::string_view kFirstLanguage = "submnuLng(0)"; // each file registers its own entry

bool IsFileCommand(std::string_view name)
{
    const auto commands = FileCommands();
    return std::find(commands.begin(), commands.end(), name) != commands.end();
}

bool CanRunNow(const MainForm &form, std::string_view name)
{
    if (form.exporting && name != "submnuExit")
        return false;
    return CanRun(name) && (form.fileCommandsEnabled || !IsFileCommand(name));
}

// Whether an entry of a sub-menu is enabled.
bool HasUsableEntry(MainForm &form, std::string_view submenu)
{
    const auto lines = MenuLines();
    return std::any_of(lines.begin(), lines.end(), [&](const MenuLine &line) {
        return line.parent == submenu && line.caption != "-" && form.FindMenu(line.name)->Enabled();
    });
}

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

// The rows hold what was read before, so they are offered to be read again.
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

// While one exists, commands use the list on which the popup was opened.
class PopupClick
{
public:
    explicit PopupClick(MainForm &form) : m_form(form) { m_form.inPopupClick = true; }
    ~PopupClick() { m_form.inPopupClick = false; }
    PopupClick(const PopupClick &) = delete;
    PopupClick &operator=(const PopupClick &) = delete;

private:
    MainForm &m_form;
};

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

void RunCommand(MainForm &form, std::string_view name)
{
    const ui::Command *entry = form.FindMenu(name);
    if (entry != nullptr && (!entry->Enabled() || !CanRunNow(form, name)))
        return;
    RunHandler(name);
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

void UpdateCommands(MainForm &form)
{
    for (const MenuLine &line : MenuLines())
        if (!line.parent.empty() && line.caption != "-" && !line.submenu)
            form.FindMenu(line.name)->SetEnabled(CanRunNow(form, line.name));
    for (const MenuLine &line : MenuLines())
        if (line.submenu) // a sub-menu is disabled when all its entries are
            form.FindMenu(line.name)->SetEnabled(HasUsableEntry(form, line.name));
    for (const MenuLine &line : ExtraMenuLines())
        if (ui::Command *entry = form.FindMenu(line.name); entry && !line.parent.empty())
            entry->SetEnabled(CanRunNow(form, line.name));
    if (ui::Command *entry = form.FindMenu("submnuUnicodeTags"); entry != nullptr)
        entry->SetChecked(shell::TheGlobals().UnicodeTags);
    for (ui::Command &button : form.buttons)
        button.SetEnabled(CanRunNow(form, button.name));
}

void CheckRegistrations(MainForm &form)
{
    std::string missing;
    const auto check = [&missing](std::string_view name, bool isThere) {
        if (!isThere)
            missing.append(" ").append(name);
    };
    for (const auto lines : {MenuLines(), ExtraMenuLines()})
        for (const MenuLine &line : lines) {
            const bool isCommand = !line.parent.empty() && line.caption != "-" && !line.submenu &&
                                   line.name != kFirstLanguage;
            const ui::Command *entry = form.FindMenu(line.name);
            if (isCommand && entry != nullptr && entry->Visible())
                check(line.name, IsRegistered(line.name));
        }
    for (const PopupLine &line : PopupLines())
        if (!line.command.empty())
            check(line.command, IsRegistered(line.command));
    for (const std::string_view marker : {kFileMarker, KindOfField("List").marker})
        check(marker, OpenerOf(marker) != nullptr);
    if (!missing.empty())
        throw runtime::RuntimeError(runtime::kMemberNotFound, "Not registered:" + missing);
}

void SetFileCommandsEnabled(MainForm &form, bool enabled)
{
    form.fileCommandsEnabled = enabled;
    for (const std::string_view name : FileCommands()) {
        const bool on = CanRunNow(form, name);
        form.FindMenu(name)->SetEnabled(on);
        form.FindButton(name)->SetEnabled(on);
    }
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

void BuildPopup(MainForm &form)
{
    form.cp.clear();
    for (const PopupLine &line : PopupLines()) {
        const std::string caption =
            shell::GetLanguageText(line.caption, line.languageKey, "PopUpMenu");
        form.cp.push_back({line.IsTitle() ? "-" + caption : caption, std::string(line.key),
                           std::string(line.image)});
    }
    UpdatePopup(form);
}

void UpdatePopup(MainForm &form)
{
    for (std::size_t i = 0; i < form.cp.size(); ++i)
        form.cp[i].enabled = PopupLines()[i].IsTitle() || CanRun(PopupLines()[i].command);
}

void ClickPopup(MainForm &form, std::string_view key)
{
    if (form.exporting)
        return;
    for (const PopupLine &line : PopupLines())
        if (line.key == key && !line.IsTitle() && CanRun(line.command)) {
            const PopupClick click(form);
            RunHandler(line.command);
            return;
        }
}

void LV_MouseDown(MainForm &form, int button, ui::RowId hit)
{
    constexpr int kRightButton = 2;
    if (button != kRightButton)
        return;
    if (hit != ui::kNoRow) {
        form.LV.SelectOnly(hit);
        if (form.LV.onItemClick)
            form.LV.onItemClick();
    }
    OpenPopup(form, form.LV);
}

void ShowPop(MainForm &form)
{
    const ui::Rect cursor = form.calls.cursor();
    UpdatePopup(form);
    LogoDraw(form, form.calls.popupHeights());
    form.calls.showPopup(cursor.left - form.window.left - 200, cursor.top - form.window.top - 800);
}

void LogoDraw(MainForm &form, const std::vector<int> &entryHeights)
{
    int heightPx = 0;
    for (const int height : entryHeights)
        heightPx += height;
    form.picSideBar.SetHeight(ui::TwipsOfPixels(heightPx));
    if (form.logo == nullptr)
        return;
    form.logo->heightTwips = form.picSideBar.Height();
    form.logo->Draw();
}

} // namespace browser
