// browser/commands.h - the main window's commands as tables: menu tree, toolbar, popup, images, and
// the list of those that are not built. No state.
#pragma once

#include <span>
#include <string_view>

namespace browser
{

// One line of the menu tree, in the order of the menus; a parent stands before its entries.
struct MenuLine {
    std::string_view name;     // "mnuFile", "submnuExit", "g"
    std::string_view parent;   // empty for a menu of the bar
    std::string_view caption;  // English; "&" marks the access key, "-" a separator
    std::string_view shortcut; // "Ctrl+Q"; empty for none. Alt+3 stands in the caption instead
    bool enabled = true;
    bool checked = false;
    bool submenu = false;
};
std::span<const MenuLine> MenuLines();

// One place of the toolbar; an empty key is a separator between groups.
struct ToolButton {
    std::string_view key; // the name of the menu entry that it mirrors
    std::string_view tooltip;
    std::string_view image;
};
std::span<const ToolButton> ToolButtons();

// The images of menu entries, by key in the image list `Mns`.
struct MenuImage {
    std::string_view image;
    std::string_view name;
};
std::span<const MenuImage> MenuImages();

// One entry of the list's popup, in order. A title line's caption has "-" before it when it is
// built (PopupCaption).
struct PopupLine {
    std::string_view languageKey; // in section `PopUpMenu`
    std::string_view caption;     // English
    std::string_view key;         // "fOptions", "Info", "Export", ...
    std::string_view image;       // key in `Mns`; empty for a title line
    std::string_view command;     // what must be built for it, by name; empty for a title line
    bool IsTitle() const { return image.empty(); }
};
std::span<const PopupLine> PopupLines();

// The four commands that follow the selection of files.
std::span<const std::string_view> FileCommands();

// Commands whose code does not stand yet: menu entries, popup keys (with "cp_" before them) and
// "PlayMP3File". They stay disabled whatever enables them. Each one built leaves this list.
std::span<const std::string_view> CommandsNotBuilt();

} // namespace browser
