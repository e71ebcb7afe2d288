// browser/mainform.h - frmMain without its window: its controls and fields, and what load, size
// changes, keys, popup and unload do with them. The window binds its widgets to the controls.
#pragma once

#include "browser/commands.h"
#include "browser/layout.h"
#include "browser/panelform.h"
#include "ui/cLogo.h"
#include "ui/controls/command.h"
#include "ui/controls/keyedtree.h"
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

// What the form needs of its window and of the program around it. The window fills in its part,
// app/ the last two. LoadMainForm fails when one is missing.
struct MainFormCalls {
    std::function<int(std::string_view)> textWidth; // twips, in the form's font
    std::function<void()> placed;                   // a layout has set the places: show them
    std::function<ui::Rect(const ui::Rect &)>
        bringIntoView; // a stored place, fitted to the screens
    std::function<void()> showWindow;
    std::function<void(int left, int top)> showPopup; // twips relative to the window
    std::function<ui::Rect()> cursor;                 // pointer on the screen, in twips: left, top
    std::function<std::vector<int>()> popupHeights;   // of the popup's entries, in pixels
    std::function<void()> raisePanel; // list to the back, panel and scroll bar to the front
    std::function<void()> unloadForms;
    std::function<void()> endProgram;
};

// One entry of the popup as built.
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

    // --- The window itself, kept up to date by it. Twips; see kFrameHeight in layout.h.
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
    ui::KeyedTree TV; // pathSeparator is the platform's
    ui::Area Separator{{3000, 0, kSeparatorPixels *ui::kTwipsPerPixel, 3000}};
    ui::KeyedList LV;
    ui::StatusBar SB;
    ui::Area statusBarArea{{0, 0, 12000, 345}};
    ui::ProgressBar PBar;
    ui::Area pbarArea;
    ui::Area picSideBar{{0, 0, 360, 3000}}; // the popup's strip
    // The events of the last four belong to the areas that install themselves.
    ui::Timer tmrRefreshList{30000, true};
    ui::Timer tmr_Playing{250};
    ui::Timer tmrAutoCheckVersion{60000};
    ui::Timer tmrClearAutoCheck{45000};
    ui::Timer tmrListFiles{50}; // shows what is known of the files of a play list

    // Menus, their entries and the toolbar's buttons. Of an entry the name is the key; the language
    // entries are "submnuLng" with an index after it ("submnuLng(0)").
    std::deque<ui::Command> menu;
    std::deque<ui::Command> buttons;
    ui::Command *FindMenu(std::string_view name);   // null when there is none
    ui::Command *FindButton(std::string_view name); // null when there is none

    // The folders of the tree's nodes by their keys: a node's key has its folder in upper case, and
    // its text the folder's last name alone.
    std::unordered_map<std::string, std::string> folderOfNode;

    std::vector<PopupEntry> cp; // stored under the name "Pop"
    std::unique_ptr<ui::cLogo> logo;

    // --- Fields.
    bool TreeJustCollapsed = false;
    bool TreeJustExpanded = false;
    bool SeparatorDragging = false;
    bool PopupFromSearch = false;
    bool fileCommandsEnabled = false; // as SetFileCommandsEnabled was last called
    bool progressBarLaid = false;     // the bar moves into the status bar once a run
    bool separatorReleased = false;   // a release came while a move was laying out
    bool listHooked = false;
    std::string catalogueError; // why the last load of the tree could not read it all; else empty
    std::uint64_t shownRun = 0; // the number of the regeneration that the list's area has told of
    bool closePending =
        false;              // the window closes when the running regeneration or export has ended
    bool maximised = false; // the window fills its screen; its place without that is `normal`
    ui::Rect normal;        // twips, as `window`
    bool inPopupClick = false;  // a command of the popup runs
    bool exporting = false;     // lists and commands rest
    bool exportStopped = false; // the running export ends at the next file
    std::string exportTarget;   // the folder of the last export of this run; empty at first
    bool starting = true;       // until ShowMainForm has ended

    // The rows that ItemClick showed last: of which click, for which key, in which filling.
    struct Shown {
        std::uint64_t gesture = 0;
        std::string key;
        std::uint64_t filling = 0;
        std::string image; // of ImgIcon

        bool operator==(const Shown &) const = default;
    } shown;

    // The search window's list while that window is open; null otherwise. Owned by the search.
    ui::KeyedList *searchList = nullptr;

    std::function<void()> extrasBuilt; // the window's: the menu of extras has its commands

    MainFormCalls calls;
};

// The list that the popup's commands work on: the search window's after PopupFromSearch, else LV.
ui::KeyedList &PopupList(MainForm &form);

// The one main window; created by the first touch. ResetMainForm puts back a fresh one and forgets
// all registered commands.
MainForm &frmMain();
void ResetMainForm();

// Form_Load. Registers the form's own commands; reads the language file; the panel starts empty,
// the file commands are disabled. Errors: kObjectNotSet when one of the calls is missing.
void LoadMainForm(MainForm &form);

// ReDrawForm: lays out all children, yields once, saves the settings of a complete layout.
void ReDrawForm(MainForm &form);

// Form_Resize: the layout, then the panel's text wrapped again.
void ResizeMainForm(MainForm &form);

// A drag of the splitter: press, move (mouse position within the splitter, twips), release.
void Separator_MouseDown(MainForm &form);
void Separator_MouseMove(MainForm &form, double mouseX);
void Separator_MouseUp(MainForm &form);

// A click on a menu entry or a toolbar button: runs the command of that name (browser/commands.h).
// One that is disabled does nothing. Errors: kMemberNotFound for a name that no entry has; those of
// the handler.
void RunCommand(MainForm &form, std::string_view name);

// Form_KeyDown. True when the key was taken (its code becomes 0). Key codes are ASCII for digits.
bool Form_KeyDown(MainForm &form, int keyCode, bool alt);

// Brings every entry's and button's state up to date: enabled when its command can run, and for a
// file command when a file is selected; a sub-menu when one of its entries is.
void UpdateCommands(MainForm &form);

// Enables or disables the four file commands and their buttons; an unregistered one stays disabled.
void SetFileCommandsEnabled(MainForm &form, bool enabled);

// The entries of the language menu: the names of the language files without their extension, in the
// folder's order. With none the separator `hyLang` and the first entry are hidden.
void BuildLanguageMenu(MainForm &form, const std::vector<std::string> &captions);

// The popup. LV_MouseDown: `button` 2 is the right one; `hit` the row under the pointer or kNoRow.
void LV_MouseDown(MainForm &form, int button, ui::RowId hit);
void ShowPop(MainForm &form);
// A click on the popup's entry with this key. One whose command cannot run does nothing.
void ClickPopup(MainForm &form, std::string_view key);
// Sizes and redraws the strip for entries of these heights in pixels.
void LogoDraw(MainForm &form, const std::vector<int> &entryHeights);

// The list's own window procedure: puts the panel in front on 0x20A (wheel) and 0x115 (scroll).
void HookList(MainForm &form);
void UnhookList(MainForm &form);
void ListMessage(MainForm &form, int message);

// Lays the progress bar over the status bar panel `panelKey`, `margin` twips inside it; its place
// is found once a run.
void ShowProgressBar(MainForm &form, std::string_view panelKey = "PlayingStatus", int margin = 40);

// The steps of start-up that concern the window: WebStyle's check mark and the empty address; tree
// and list made visible and the window sized around them.
void ApplyPreferences(MainForm &form);
void ShowTreeAndList(MainForm &form);

// ListRefresh, then LoadTreeView(""); nothing while a regeneration is under way. A close that was
// asked for meanwhile follows in place of the tree. Errors: those of ListRefresh.
void RegenerateAndLoad(MainForm &form, bool showProgress);

// Closes the window, if all other windows let it (their mayClose): unloads it, or, while a
// regeneration runs, ends that at its next file and unloads afterwards. submnuExit and the window's
// own close come here.
void CloseMainForm(MainForm &form);

// The splash's end: icon, folder name "Quenlin", the stored place (fitted to the screen), the
// player's timer, the window, the tips, the layout.
void ShowMainForm(MainForm &form);

// Stores the window's place, its size, whether it is maximised and the tree's width among the
// preferences. The place of a maximised window is the one that it returns to.
void SavePlacement(const MainForm &form);

// Form_Unload, in its order; ends the program through the calls.
void UnloadMainForm(MainForm &form);

} // namespace browser
