#include "browser/liststate.h"

#include "browser/commands.h"
#include "catalogue/regeneration.h"
#include "runtime/text.h"
#include "shell/language.h"
#include "shell/settings.h"

#include <string>
#include <string_view>

namespace browser
{

namespace
{

std::string StatusText(std::string_view defaultText, std::string_view key)
{
    return shell::GetLanguageText(defaultText, key, "Status");
}

// Whether the tree has groups of songs, and all of them are empty.
bool IsEmptyOfSongs(const ui::KeyedTree &tree)
{
    bool anyGroup = false;
    for (const ui::NodeId root : tree.Children(ui::kNoNode))
        for (const ui::NodeId group : tree.Children(root)) {
            if (tree.Key(group) == "ByList")
                continue;
            if (!tree.Children(group).empty())
                return false;
            anyGroup = true;
        }
    return anyGroup;
}

bool HasGroups(const ui::KeyedTree &tree)
{
    const auto &roots = tree.Children(ui::kNoNode);
    return !roots.empty() && !tree.Children(roots.front()).empty();
}

// A text about the last run, with its numbers.
std::string RunText(const catalogue::RegenerationSummary &summary)
{
    std::string text =
        summary.skipped
            ? StatusText("This folder has been read since the program was started: $Songs$ songs, "
                         "$Reports$ entries in the report.",
                         "FolderDone")
            : StatusText("Done: $Songs$ songs, $Reports$ entries in the report.",
                         "RegenerationDone");
    text = runtime::Replace(text, "$Songs$", std::to_string(summary.files));
    text = runtime::Replace(text, "$Reports$", std::to_string(summary.reported));
    const std::string next = StatusText("Choose a group on the left.", "ChooseGroup");
    return text + "\r\r" + next;
}

void ShowEmptyCatalogue(MainForm &form)
{
    if (!CanRun("submnuPreferences") ||
        !shell::GetSetting(shell::kPreferences, "MP3 Directory").empty()) {
        form.LV.SetHint(StatusText("The catalogue is empty. Choose Tools, Regenerate Database to "
                                   "fill it from your music folder.",
                                   "EmptyCatalogue"));
        return;
    }
    form.LV.SetHint(StatusText("Quenlin does not know yet where your music is.", "NoFolderYet"),
                    StatusText("Choose the music &folder...", "ChooseFolder"));
}

} // namespace

void ShowListState(MainForm &form)
{
    const catalogue::RegenerationSummary &summary = catalogue::LastRegeneration();
    const bool hasRun = summary.number != form.shownRun;
    form.shownRun = summary.number;
    if (!form.catalogueError.empty())
        form.LV.SetHint(runtime::Replace(
            StatusText("The catalogue cannot be read: $Reason$", "CatalogueDamaged"), "$Reason$",
            form.catalogueError));
    else if (hasRun && !summary.stopped)
        form.LV.SetHint(RunText(summary));
    else if (IsEmptyOfSongs(form.TV))
        ShowEmptyCatalogue(form);
    else
        form.LV.SetHint(HasGroups(form.TV)
                            ? StatusText("Choose a group on the left.", "ChooseGroup")
                            : std::string());
    if (hasRun && summary.skipped)
        form.SB.SetText("Playing",
                        StatusText("This folder has been done in this run.", "FolderDoneShort"));
}

void ShowReading(MainForm &form, std::int64_t value, std::int64_t maximum)
{
    const std::string text =
        maximum == 0 ? StatusText("Reading your music...", "CountingFiles")
                     : StatusText("Reading your music: $Count$ of $Total$", "ReadingFiles");
    form.LV.SetHint(runtime::Replace(runtime::Replace(text, "$Count$", std::to_string(value)),
                                     "$Total$", std::to_string(maximum)));
}

void EndRegenerationDisplay(MainForm &form)
{
    if (catalogue::IsRegenerating() || form.exporting)
        return;
    form.TV.SetEnabled(true);
    form.LV.SetEnabled(true);
    form.PBar.SetVisible(false);
}

} // namespace browser
