// shell/startup/startup.h - the program's entry: opens the catalogue or refuses it, reads the
// preferences, then works as a batch job or brings the main window up. Needs the ports of
// platform/machine.h and the program's folder (shell/apppath.h).
#pragma once

#include "runtime/error.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{
class ADOclass;
}

namespace shell
{

// What start-up asks of the windows, in the order in which it does. app/ fills it in; what is empty
// is passed over, as in a terminal, where there are no windows.
struct StartUpWindows {
    std::function<void()> LoadMainWindow;   // frmMain is made, and stays hidden
    std::function<void(bool)> ShowWebStyle; // check mark of submnuWebStyle; WEPath is emptied
    std::function<void()> ShowSplash;       // in its role at start
    std::function<void(bool)> ListRefresh;  // with or without a progress bar
    std::function<void()> SizeMainWindow;   // TV, LV visible, TBAddress enabled, window around
    std::function<void(const std::vector<std::string> &)> BuildLanguageMenu; // the captions
    std::function<void()> LoadShellIcons;               // those of ".mp3", then of ".m3u"
    std::function<void(std::string_view)> LoadTreeView; // a field, or "" for all
    std::function<void()> ArmSplashTimer;               // CloseIt ends the splash by itself
};

// The whole of start-up. `elements`: the paths of the command line (shell/startup/batch.h), none
// for the windows.
// Returns: nothing when the program lives on in its windows; else the exit status with which the
//          process has to end: 0 after a batch whose summary was written, kRowsLost where that
//          names lost rows, kRefused for a refused catalogue.
// Errors:  RuntimeError of any step; no handler is in force. See ShowRuntimeError.
std::optional<int> Main(const std::vector<std::string> &elements, const StartUpWindows &windows);

// The same up to the preferences, then the regeneration of `folder`
// (shell/startup/regeneratejob.h).
// Returns: the exit status, 0, kRowsLost or kRefused. Errors: as above; kPathNotFound for an absent
//          folder.
int MainRegenerate(const std::string &folder, const StartUpWindows &windows);

// Configures `target` for the catalogue in the program's folder.
void SetADOFields(catalogue::ADOclass &target);

// The exit status of a start that was refused or failed.
inline constexpr int kRefused = 1;

// The exit status of a job whose songs did not all get their row, though they could be read: the
// disk is full, or another program holds the catalogue. The job's report names them.
inline constexpr int kRowsLost = 3;

// Reads `Validations` and compares its version. False when the catalogue is refused: too old, not
// a whole catalogue, or absent; the user was told. The file is only read.
// Errors: RuntimeError when its version is no version.
bool CheckCatalogue();

// Reads the preferences into TheGlobals().
void ReadPreferences();

// The names of the language files in the program's folder without their extension, in the order in
// which the file system yields them.
std::vector<std::string> FindLanguages();

// The box for an error that no handler took: its number and its words.
void ShowRuntimeError(const runtime::RuntimeError &error);

// The page from which a catalogue can be had again; a reserved domain until the publisher has one.
inline constexpr std::string_view kDownloadPage =
    "http://www.quenlin.example/Quenlin/downloadfiles-index.htm";

} // namespace shell
