// browser/commands.h - the main window's commands: tables of the menus, the toolbar, the popup and
// the images; and the registry, in which each area of the program registers its commands and how it
// opens its kinds of list rows. State: the registry.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace ui
{
class KeyedList;
}

namespace browser
{

// One line of the menus, in their order; a parent comes before its entries.
struct MenuLine {
    std::string_view name;     // such as "mnuFile" or "submnuExit"
    std::string_view parent;   // empty for a menu of the menu bar
    std::string_view caption;  // English; "&" marks the access key, "-" a separator
    std::string_view shortcut; // "Ctrl+Q"; empty for none. Alt+3 is part of a caption instead
    bool enabled = true;
    bool checked = false;
    bool submenu = false;
};
std::span<const MenuLine> MenuLines();

// The menu Extras, between Tools and Help. It is built after the others have been translated, and
// not at all when the setting "Extras" / "Menu" is 0.
std::span<const MenuLine> ExtraMenuLines();

// One place of the toolbar; an empty key is a separator between two groups.
struct ToolButton {
    std::string_view key; // the name of the menu entry with the same command
    std::string_view tooltip;
    std::string_view image;
};
std::span<const ToolButton> ToolButtons();

// The images of menu entries, by their key in the image list `Mns`.
struct MenuImage {
    std::string_view image;
    std::string_view name;
};
std::span<const MenuImage> MenuImages();

// One entry of the list's popup menu, in order. The caption of a title line begins with "-" in the
// popup.
struct PopupLine {
    std::string_view languageKey; // in the section `PopUpMenu`
    std::string_view caption;     // English
    std::string_view key;         // "fOptions", "Info", "Export", ...
    std::string_view image;       // key in `Mns`; empty for a title line
    std::string_view command;     // the name of the command; empty for a title line
    bool IsTitle() const { return image.empty(); }
};
std::span<const PopupLine> PopupLines();

// The four commands that are enabled only while a file is selected.
std::span<const std::string_view> FileCommands();

// --- The registry. Each area registers its commands in its own `Install()`, which app/ calls once
// before the main window is loaded (LoadMainForm). A menu entry, button or popup entry without a
// registered command is disabled. Letter case of ASCII letters in names is ignored.

// Registers the handler for a menu entry, its toolbar button or a popup entry. `name` is that of
// the menu line ("submnuSearch") or the `command` of a popup line ("cp_Play"). `enabled`, if given,
// is called by UpdateCommands: when it returns false, the entry is disabled; when true, the other
// rules decide. A second registration of a name replaces the first.
// Errors: kMemberNotFound when no table has the name.
void RegisterCommand(std::string_view name, std::function<void()> handler,
                     std::function<bool()> enabled = {});

// Whether the command is registered; whether it can be used now, which means that it is registered
// and its `enabled`, if given, returns true.
[[nodiscard]] bool IsRegistered(std::string_view name);
[[nodiscard]] bool CanRun(std::string_view name);

// Runs the handler of a registered command, also when its entry is disabled.
// Errors: kMemberNotFound when it is not registered; those of the handler.
void RunHandler(std::string_view name);

// Opens an item. `value`: for the row of a file its path (bytes), for any other item its key
// without the marker. `list`: for a file the list that was clicked, for any other item the list to
// fill.
using OpenItem = std::function<void(const std::string &value, ui::KeyedList &list)>;

// Registers what opens the nodes and rows whose keys begin with `marker` (browser/itemkinds.h): the
// player plays files ("/"), the play lists show their entries ("&"). The browser itself shows
// values.
// Errors: kMemberNotFound for an unknown marker.
void RegisterItemKind(std::string_view marker, OpenItem open);

// What is registered for the marker; empty when nothing is: the item then opens nothing.
[[nodiscard]] OpenItem OpenerOf(std::string_view marker);

// Removes all registrations, so that tests can run in any order.
void ForgetRegistrations();

} // namespace browser
