// browser/commands.h - the main window's commands: tables of the menu tree, the toolbar, the popup
// and the images; and the registry, where each area of the program registers the commands that it
// carries out and the kinds of list rows that it opens. State: the registry.
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

// One line of the menu tree, in the order of the menus; a parent comes before its entries.
struct MenuLine {
    std::string_view name;     // "mnuFile", "submnuExit", "g"
    std::string_view parent;   // empty for a menu of the bar
    std::string_view caption;  // English; "&" marks the access key, "-" a separator
    std::string_view shortcut; // "Ctrl+Q"; empty for none. Alt+3 is a part of its caption instead
    bool enabled = true;
    bool checked = false;
    bool submenu = false;
};
std::span<const MenuLine> MenuLines();

// The menu of extras, between Tools and Help: built after the others were translated, and not at
// all when the setting "Extras" / "Menu" is 0.
std::span<const MenuLine> ExtraMenuLines();

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

// One entry of the list's popup, in order. In the built popup a title line's caption has "-" before
// it.
struct PopupLine {
    std::string_view languageKey; // in section `PopUpMenu`
    std::string_view caption;     // English
    std::string_view key;         // "fOptions", "Info", "Export", ...
    std::string_view image;       // key in `Mns`; empty for a title line
    std::string_view command;     // the command that it runs, by name; empty for a title line
    bool IsTitle() const { return image.empty(); }
};
std::span<const PopupLine> PopupLines();

// The four commands that follow the selection of files.
std::span<const std::string_view> FileCommands();

// --- The registry. An area registers what it carries out in its own `Install()`, which app/ calls
// once before the main window is loaded (LoadMainForm). What is registered is built; a menu entry,
// button or popup entry whose command nobody registered is disabled. Names are compared without
// regard to the case of ASCII letters.

// Registers what a menu entry, its toolbar button or a popup entry does: `name` is that of the menu
// line ("submnuSearch") or the `command` of a popup line ("cp_Play"). `enabled`, where given, is
// asked whenever the states are brought up to date (UpdateCommands): false disables the entry, true
// leaves it to the other rules. A second registration of a name replaces the first. Errors:
// kMemberNotFound when no table has the name.
void RegisterCommand(std::string_view name, std::function<void()> handler,
                     std::function<bool()> enabled = {});

// Whether the command is registered, and whether it can be used now: registered, and its `enabled`,
// where given, is true.
[[nodiscard]] bool IsRegistered(std::string_view name);
[[nodiscard]] bool CanRun(std::string_view name);

// Runs a registered command's handler, whatever its entry's state is.
// Errors: kMemberNotFound when it is not registered; those of the handler.
void RunHandler(std::string_view name);

// What opening an item does: `value` is the path of a file's row, and of any other item its key
// without the marker; `list` is the list that was clicked for a file, the list to be filled for any
// other item.
using OpenItem = std::function<void(const std::string &value, ui::KeyedList &list)>;

// Registers who opens the nodes and rows whose keys begin with `marker` (browser/itemkinds.h): the
// player plays files ("/"), the play lists list their entries ("&"). The browser itself lists
// values. Errors: kMemberNotFound for a marker that no kind has.
void RegisterItemKind(std::string_view marker, OpenItem open);

// The registered one; empty when nobody registered: the item then opens nothing.
[[nodiscard]] OpenItem OpenerOf(std::string_view marker);

// Forgets all registrations, so that tests can run in any order.
void ForgetRegistrations();

} // namespace browser
