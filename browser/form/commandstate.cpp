#include "browser/form/commandstate.h"

#include "browser/itemkinds.h"
#include "runtime/error.h"
#include "shell/globals.h"

#include <algorithm>
#include <string>
#include <utility>

namespace browser
{

namespace
{

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

} // namespace

void RunCommand(MainForm &form, std::string_view name)
{
    const ui::Command *entry = form.FindMenu(name);
    if (entry != nullptr && (!entry->Enabled() || !CanRunNow(form, name)))
        return;
    RunHandler(name);
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

void SetFileCommandsEnabled(MainForm &form, bool enabled)
{
    form.fileCommandsEnabled = enabled;
    for (const std::string_view name : FileCommands()) {
        const bool on = CanRunNow(form, name);
        form.FindMenu(name)->SetEnabled(on);
        form.FindButton(name)->SetEnabled(on);
    }
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
    const std::pair<std::string_view, const ui::Timer &> timers[] = {
        {"tmrRefreshList", form.tmrRefreshList},
        {"tmr_Playing", form.tmr_Playing},
        {"tmrAutoCheckVersion", form.tmrAutoCheckVersion},
        {"tmrClearAutoCheck", form.tmrClearAutoCheck},
        {"tmrListFiles", form.tmrListFiles},
    };
    for (const auto &[name, timer] : timers)
        check(name, timer.event != nullptr);
    if (!missing.empty())
        throw runtime::RuntimeError(runtime::kMemberNotFound, "Not registered:" + missing);
}

} // namespace browser
