// browser/mainform.h - frmMain without its widgets: its controls and fields, and what happens when
// it loads, changes its size, gets a key, opens the popup and closes. The window connects its
// widgets with the controls.
#pragma once

#include "browser/commands.h"
#include "browser/layout.h"
#include "browser/panelform.h"
#include "ui/cLogo.h"
#include "ui/controls/command.h"
#include "ui/controls/inputs/keyedtree.h"
#include "ui/controls/progressbar.h"
#include "ui/controls/statusbar.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace browser
{

// The functions that the form calls on its window and in the program. The window sets its part,
// app/ the last two. LoadMainForm fails when one is missing.
struct MainFormCalls {
    std::function<int(std::string_view)> textWidth; // twips, in the form's font
    std::function<void()> placed; // called when a layout has set the places, to show them
    std::function<ui::Rect(const ui::Rect &)>
        bringIntoView; // moves a stored place onto the screens
    std::function<void()> showWindow;
    std::function<void(int left, int top)> showPopup; // twips relative to the window
    std::function<ui::Rect()> cursor; // the place of the mouse on the screen, in twips: left, top
    std::function<std::vector<int>()> popupHeights; // the heights of the popup's entries, in pixels
    std::function<void()> raisePanel; // puts the panel and the scroll bar in front of the list
    std::function<void()> unloadForms;
    std::function<void()> endProgram;
};

// One entry of the popup menu.
struct PopupEntry {
    std::string caption; // title lines begin with "-"
    std::string key;
    std::string image;
    bool enabled = true;
};

struct MainForm : PanelForm {
    MainForm();
    MainForm(const MainForm &) = delete;
    MainForm &operator=(const MainForm &) = delete;

    // --- The window itself; these are updated by it. In twips; see kFrameHeight in layout.h.
    ui::Rect window{45, 465, 12000, 7350};
    int scaleWidth = 12000 - kFrameWidth;
    bool minimised = false;
    bool visible = false;
    std::string caption;

    // --- Controls.
    ui::Area TB{{0, 0, 12000, 540}};
    ui::Area TBAddress{{30, 0, 12000, kDesignAddressHeight}};
    ui::Label lblAddress{"Address", {120, 120, 700, 255}};
    ui::Label WEPath{"", {1020, 120, 9000, 255}};
    ui::KeyedTree TV; // its pathSeparator is that of the platform
    ui::Area Separator{{3000, 0, kSeparatorPixels *ui::kTwipsPerPixel, 3000}};
    ui::KeyedList LV;
    ui::StatusBar SB;
    ui::Area statusBarArea{{0, 0, 12000, 345}};
    ui::ProgressBar PBar;
    ui::Area pbarArea;
    ui::Area picSideBar{{0, 0, 360, 3000}}; // the strip of the popup
    // Other areas handle the events of the last four.
    ui::Timer tmrRefreshList{30000, true};
    ui::Timer tmr_Playing{250};
    ui::Timer tmrAutoCheckVersion{60000};
    ui::Timer tmrClearAutoCheck{45000};
    ui::Timer tmrListFiles{50}; // shows what is known about the files of a play list

    // The menus, their entries and the toolbar's buttons. The name of an entry is its key; the
    // language entries are "submnuLng" with an index ("submnuLng(0)").
    std::deque<ui::Command> menu;
    std::deque<ui::Command> buttons;
    ui::Command *FindMenu(std::string_view name);   // null when there is none
    ui::Command *FindButton(std::string_view name); // null when there is none

    // The folder of each folder node, by the node's key, because the key is in upper case and the
    // text has only the last part of the folder.
    std::unordered_map<std::string, std::string> folderOfNode;

    std::vector<PopupEntry> cp; // saved under the name "Pop"
    std::unique_ptr<ui::cLogo> logo;

    // --- Fields.
    bool TreeJustCollapsed = false;
    bool TreeJustExpanded = false;
    bool SeparatorDragging = false;
    bool PopupFromSearch = false;
    bool fileCommandsEnabled = false; // the last argument of SetFileCommandsEnabled
    bool progressBarLaid = false;     // the bar is moved into the status bar once in a run
    bool separatorReleased = false;   // the mouse was released while a move was being laid out
    bool listHooked = false;
    std::string catalogueError; // why the last load of the tree was incomplete; else empty
    std::uint64_t shownRun =
        0;                     // the number of the last regeneration that the list's area has shown
    bool closePending = false; // close the window when the running regeneration or export ends
    bool maximised = false;    // the window fills the screen; `normal` is its place otherwise
    ui::Rect normal;           // twips, like `window`
    bool inPopupClick = false; // a command of the popup is running
    bool exporting = false;    // lists and commands are disabled
    bool exportStopped = false; // the running export must end before the next file
    std::string exportTarget;   // the folder of the last export in this run; empty at first
    bool starting = true;       // true until ShowMainForm has ended

    // The rows that ItemClick has shown last: for which click and key, and the list's number of
    // clearings.
    struct Shown {
        std::uint64_t gesture = 0;
        std::string key;
        std::uint64_t clearCount = 0;
        std::string image; // of ImgIcon

        bool operator==(const Shown &) const = default;
    } shown;

    // The list of the search window while that is open, else null. The search owns it.
    ui::KeyedList *searchList = nullptr;

    std::function<void()> extrasBuilt; // for the window: the menu Extras has its commands now

    MainFormCalls calls;
};

// The list for the popup's commands: that of the search window after PopupFromSearch, else LV.
ui::KeyedList &PopupList(MainForm &form);

// The one main window; the first call creates it. ResetMainForm replaces it by a new one and
// removes all registered commands.
MainForm &frmMain();
void ResetMainForm();

// Form_Load. Registers the form's own commands and reads the language file; the panel is empty and
// the file commands are disabled. Errors: kObjectNotSet when one of the calls is missing.
void LoadMainForm(MainForm &form);

// ReDrawForm: sets the places of all children, yields once, and saves the settings when the layout
// is complete.
void ReDrawForm(MainForm &form);

// Form_Resize: does the layout, then wraps the panel's text again.
void ResizeMainForm(MainForm &form);

// Dragging the splitter: press, move (the place of the mouse inside the splitter, in twips),
// release.
void Separator_MouseDown(MainForm &form);
void Separator_MouseMove(MainForm &form, double mouseX);
void Separator_MouseUp(MainForm &form);

// A click on a menu entry or a toolbar button: runs the command of that name (browser/commands.h).
// Does nothing when it is disabled.
// Errors: kMemberNotFound for an unknown name; those of the handler.
void RunCommand(MainForm &form, std::string_view name);

// Form_KeyDown. Returns: true when the key was handled. For digits the key code is their ASCII
// code.
bool Form_KeyDown(MainForm &form, int keyCode, bool alt);

// Updates the state of every entry and button. An entry is enabled when its command can run and,
// for a file command, a file is selected; a sub-menu, when one of its entries is enabled.
void UpdateCommands(MainForm &form);

// Enables or disables the four file commands and their buttons; one without a handler stays
// disabled.
void SetFileCommandsEnabled(MainForm &form, bool enabled);

// Sets the entries of the language menu: the names of the language files without their extension,
// in the order of the folder. When there are none, the separator `hyLang` and the first entry are
// hidden.
void BuildLanguageMenu(MainForm &form, const std::vector<std::string> &captions);

// The popup. LV_MouseDown: `button` 2 is the right one; `hit` is the row under the mouse or kNoRow.
void LV_MouseDown(MainForm &form, int button, ui::RowId hit);
void ShowPop(MainForm &form);
// A click on the popup's entry with this key. Does nothing when its command cannot run.
void ClickPopup(MainForm &form, std::string_view key);
// Sets the size of the strip for entries of these heights (pixels) and paints it again.
void LogoDraw(MainForm &form, const std::vector<int> &entryHeights);

// Makes the messages 0x20A (wheel) and 0x115 (scroll) of the list put the panel in front.
void HookList(MainForm &form);
void UnhookList(MainForm &form);
void ListMessage(MainForm &form, int message);

// Puts the progress bar over the status bar's panel `panelKey`, `margin` twips inside it. Its place
// is computed once in a run.
void ShowProgressBar(MainForm &form, std::string_view panelKey = "PlayingStatus", int margin = 40);

// Steps of the start for the window: sets WebStyle's check mark and empties the address; shows tree
// and list and sets the size of the window.
void ApplyPreferences(MainForm &form);
void ShowTreeAndList(MainForm &form);

// ListRefresh, then LoadTreeView(""). Does nothing during a regeneration. If the user has closed
// the window meanwhile, that is done instead of loading the tree. Errors: those of ListRefresh.
void RegenerateAndLoad(MainForm &form, bool showProgress);

// Closes the window, if all other windows allow it (their mayClose). During a regeneration, that is
// ended at its next file first. submnuExit and the window's close button do this.
void CloseMainForm(MainForm &form);

// After the splash: icon, folder name "Quenlin", the stored place (moved onto a screen), the
// player's timer, the window, the tips, the layout.
void ShowMainForm(MainForm &form);

// Saves in the preferences: the window's place and size, whether it is maximised, and the tree's
// width. For a maximised window, the place is the one that it has otherwise.
void SavePlacement(const MainForm &form);

// Form_Unload, step by step; ends the program through the calls.
void UnloadMainForm(MainForm &form);

} // namespace browser
