// browser/mainform.h - frmMain without its widgets: its controls and fields. The window connects
// its widgets with the controls. What happens when it loads: form/formload.h; changes its size:
// formlayout.h; gets a key, opens the popup: formcommands.h; closes: formclose.h.
#pragma once

#include "browser/commands.h"
#include "browser/layout.h"
#include "browser/panelform.h"
#include "ui/cLogo.h"
#include "ui/controls/command.h"
#include "ui/controls/inputs/keyedtree.h"
#include "ui/controls/inputs/splitter.h"
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
    // Moves a stored place (twips) onto the screens.
    std::function<ui::Rect(const ui::Rect &)> bringIntoView;
    std::function<void()> showWindow;
    std::function<void(int left, int top)> showPopup; // twips relative to the window
    std::function<ui::Rect()> cursor; // the place of the mouse on the screen, in twips: left, top
    std::function<std::vector<int>()> popupHeights; // the heights of the popup's entries, in pixels
    std::function<void()> raisePanel;  // puts the panel and the scroll bar in front of the list
    std::function<void()> unloadForms; // closes all other windows
    std::function<void()> endProgram;  // ends the event loop
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
    ui::Splitter Separator{{3000, 0, kSeparatorPixels *ui::kTwipsPerPixel, 3000}};
    ui::KeyedList LV;
    ui::StatusBar SB;
    ui::ProgressBar PBar;
    ui::Area pbarArea;
    ui::Area picSideBar{{0, 0, 360, 3000}}; // the strip of the popup
    // Other areas handle the events of these timers.
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
    // The number of the last regeneration that the list's area has shown.
    std::uint64_t shownRun = 0;
    bool closePending = false;  // close the window when the running regeneration or export ends
    bool maximised = false;     // the window fills the screen; `normal` is its place otherwise
    ui::Rect normal;            // twips, like `window`
    bool inPopupClick = false;  // a command of the popup is running
    bool exporting = false;     // lists and commands are disabled
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

    // The list of the search window while that is open, else null. The search window owns it.
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

// From HookList to UnhookList, the messages 0x20A (WM_MOUSEWHEEL) and 0x115 (WM_VSCROLL) of the
// list put the panel in front of it; ListMessage handles one. Source: the numbers of the Windows
// API.
void HookList(MainForm &form);
void UnhookList(MainForm &form);
void ListMessage(MainForm &form, int message);

// Ends the running export before its next file; does nothing when there is none.
void StopExport(MainForm &form);

// Takes the form's controls away from the regeneration and from the status line.
void ReleaseRegeneration();

} // namespace browser
