#include "browser/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace
{

using namespace browser;

const MenuLine *Find(std::string_view name)
{
    const auto lines = MenuLines();
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const MenuLine &line) { return line.name == name; });
    return found == lines.end() ? nullptr : &*found;
}

TEST(MenuLines, NamesAreUniqueAndParentsComeFirst)
{
    std::set<std::string_view> seen;
    for (const MenuLine &line : MenuLines()) {
        EXPECT_TRUE(line.parent.empty() || seen.contains(line.parent)) << line.name;
        EXPECT_TRUE(seen.insert(line.name).second) << line.name;
        if (!line.parent.empty() && !line.parent.starts_with("mnu")) {
            EXPECT_TRUE(Find(line.parent)->submenu) << line.name;
        }
    }
    EXPECT_EQ(seen.size(), 41U);
}

TEST(MenuLines, States)
{
    std::string disabled, checked, shortcuts, submenus;
    for (const MenuLine &line : MenuLines()) {
        if (!line.enabled)
            disabled.append(line.name).append(" ");
        if (line.checked)
            checked.append(line.name).append(" ");
        if (!line.shortcut.empty())
            shortcuts.append(line.name).append("=").append(line.shortcut).append(" ");
        if (line.submenu)
            submenus.append(line.name).append(" ");
    }
    EXPECT_EQ(disabled, "submnuFileInfo submnuDuplicateEntry submnuRename submnuExport ");
    EXPECT_EQ(checked, "submnuWebStyle ");
    EXPECT_EQ(shortcuts, "submnuExit=Ctrl+Q submnuShowHelp=F1 ");
    EXPECT_EQ(submenus, "submnuPlayList submnuSetLanguage ");
}

TEST(ToolButtons, MirrorMenuEntriesInGroups)
{
    std::string keys;
    for (const ToolButton &button : ToolButtons()) {
        keys.append(button.key.empty() ? "|" : button.key.substr(6)).append(" ");
        if (!button.key.empty()) {
            EXPECT_NE(Find(button.key), nullptr) << button.key;
        }
    }
    EXPECT_EQ(keys, "AddFile | FileInfo DuplicateEntry Rename Export | ShowLyricsCurrentSong "
                    "SongControls | Search | Exit ");
}

TEST(MenuImages, NameExistingEntries)
{
    EXPECT_EQ(MenuImages().size(), 18U);
    for (const MenuImage &image : MenuImages())
        EXPECT_NE(Find(image.name), nullptr) << image.name;
}

TEST(PopupLines, RenameSharesTheCommandOfExport)
{
    std::string keys;
    for (const PopupLine &line : PopupLines())
        keys.append(line.IsTitle() ? "-" : "").append(line.key).append(" ");
    EXPECT_EQ(keys, "-fOptions Info Export Rename Duplicate -fOptions Play Pause Stop ");
    EXPECT_EQ(PopupLines()[2].command, PopupLines()[3].command);
}

TEST(CommandsNotBuilt, EachIsACommand)
{
    for (const std::string_view name : CommandsNotBuilt()) {
        const auto popup = PopupLines();
        const bool known = Find(name) != nullptr || name == "PlayMP3File" ||
                           name == "PlayListFile" ||
                           std::any_of(popup.begin(), popup.end(),
                                       [&](const PopupLine &line) { return line.command == name; });
        EXPECT_TRUE(known) << name;
    }
}

} // namespace
