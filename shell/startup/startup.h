// shell/startup/startup.h - the start of the program: opens the catalogue or refuses it, reads the
// preferences, then runs the batch or shows the main window. Needs the ports of platform/machine.h
// and the program's folder (shell/apppath.h).
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

// The functions of the windows that start-up calls, in this order. app/ sets them; an empty one is
// skipped, for example in a terminal, which has no windows.
struct StartUpWindows {
    std::function<void()> LoadMainWindow;   // frmMain is made, still hidden
    std::function<void(bool)> ShowWebStyle; // check mark of submnuWebStyle; WEPath is emptied
    std::function<void()> ShowSplash;       // in its role at the start
    std::function<void(bool)> ListRefresh;  // with or without a progress bar
    std::function<void()> SizeMainWindow;   // TV, LV visible, TBAddress enabled, window around
    std::function<void(const std::vector<std::string> &)> BuildLanguageMenu; // the captions
    std::function<void()> LoadShellIcons;               // those of ".mp3", then of ".m3u"
    std::function<void(std::string_view)> LoadTreeView; // a field, or "" for all
    std::function<void()> ArmSplashTimer;               // CloseIt closes the splash by itself
};

// The whole start-up. `elements`: the paths of the command line (shell/startup/batch.h); empty to
// show the windows.
// Returns: nothing when the program continues in its windows; else the exit status: 0 after a batch
// whose summary was written, kRowsLost when the summary names lost rows, kRefused when the
// catalogue was refused.
// Errors: a RuntimeError of any step, uncaught. See ShowRuntimeError.
std::optional<int> Main(const std::vector<std::string> &elements, const StartUpWindows &windows);

// The same steps up to the preferences, then the regeneration of `folder`
// (shell/startup/regeneratejob.h).
// Returns: the exit status: 0, kRowsLost or kRefused.
// Errors: as above; kPathNotFound for a missing folder.
int MainRegenerate(const std::string &folder, const StartUpWindows &windows);

// Sets the fields of `target` for the catalogue in the program's folder.
void SetADOFields(catalogue::ADOclass &target);

// The exit status when the catalogue was refused or the start has failed.
inline constexpr int kRefused = 1;

// The exit status when the catalogue did not take the rows of all songs that could be read: the
// disk is full, or another program has the catalogue locked. The summary or the report names the
// songs.
inline constexpr int kRowsLost = 3;

// Reads the table `Validations` and compares the version. Returns: false when the catalogue is too
// old, incomplete or missing; a box has reported it. The file is only read.
// Errors: RuntimeError when the version cannot be parsed.
bool CheckCatalogue();

// Reads the preferences into TheGlobals().
void ReadPreferences();

// The names of the language files in the program's folder without their extension, in the order of
// the file system.
std::vector<std::string> FindLanguages();

// Shows a box for an error that nothing caught: its number and its description.
void ShowRuntimeError(const runtime::RuntimeError &error);

// The page from which a new catalogue can be downloaded: in a reserved domain, until there is a
// real one.
inline constexpr std::string_view kDownloadPage =
    "http://www.quenlin.example/Quenlin/downloadfiles-index.htm";

} // namespace shell
