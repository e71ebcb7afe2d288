#include "shell/startup/startup.h"

#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/desktop.h"
#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/openaddress.h"
#include "shell/settings.h"
#include "shell/startup/batch.h"
#include "shell/startup/filetypes.h"
#include "shell/startup/regeneratejob.h"
#include "shell/version.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>
#include <type_traits>

namespace shell
{

namespace
{

using catalogue::DataAccess;

constexpr std::string_view kNewerCatalogueNeeded =
    "You need a newer version of the database to go on.";
constexpr std::string_view kCatalogueDamaged =
    "You're database is corrupted. Download the last version\r"
    "of 'Tessaroon.mdb' and run the 'Tessaroon'. Would you like to go to\r"
    "the download page now?";
constexpr std::string_view kLanguageExtension = ".qlt";
constexpr std::string_view kNotValidDataBase = "Not ValidDataBase"; // the text that ADOclass sets

// Calls a step of the windows, if it is set.
template <class... Arguments>
void Run(const std::function<void(Arguments...)> &step,
         const std::type_identity_t<Arguments> &...arguments)
{
    if (step)
        step(arguments...);
}

// Why this user cannot write to the catalogue, in the words of the operating system; empty when the
// user can, or when there is no catalogue.
std::string WhyNotWritable()
{
    const std::string file = AppFile("MP3s.mdb");
    if (const int reason = platform::CheckAccess(file); reason != 0)
        return reason == ENOENT ? std::string() : runtime::FileError(reason, file).description;
    const int reason =
        platform::CheckAccess(GetAppPath()); // the log file is made beside the catalogue
    return reason == 0 ? std::string() : runtime::FileError(reason, GetAppPath()).description;
}

bool RefuseOldCatalogue(const std::string &details = {})
{
    if (details.empty())
        platform::TheDesktop().MessageBox(kNewerCatalogueNeeded);
    else
        platform::TheDesktop().MessageBoxWithDetails(kNewerCatalogueNeeded, details);
    return false;
}

bool RefuseDamagedCatalogue()
{
    constexpr std::string_view kTitle = "Corrupted file";
    const std::string details = WhyNotWritable();
    const auto answer =
        details.empty()
            ? platform::TheDesktop().MessageBox(kCatalogueDamaged, platform::Buttons::YesNo, kTitle)
            : platform::TheDesktop().MessageBoxWithDetails(kCatalogueDamaged, details,
                                                           platform::Buttons::YesNo, kTitle);
    if (answer == platform::Answer::Yes)
        OpenAddress(std::string(kDownloadPage), "C:\\");
    return false;
}

// The names of the language files in the program's folder, in the order of the file system; empty
// when the folder cannot be listed.
std::vector<std::string> LanguageFileNames()
{
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(GetAppPath(), failure), end;
         !failure && entry != end; entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        std::error_code vanished;
        if (runtime::EqualAscii(runtime::Right(name, kLanguageExtension.size()),
                                kLanguageExtension) &&
            !entry->is_directory(vanished))
            names.push_back(name);
    }
    return names;
}

// The path of the language file that the setting names. The menu shows "X.QLT" as "X" and stores
// "X.qlt": when there is no such file, a file whose name differs only in letter case is used.
std::string LanguageFile(const std::string &name)
{
    std::string path = AppFile(name);
    std::error_code unknown;
    if (name.empty() || std::filesystem::is_regular_file(path, unknown))
        return path;
    for (const std::string &other : LanguageFileNames())
        if (runtime::EqualText(other, name))
            return AppFile(other);
    return path;
}

// The steps up to the preferences, which every kind of run needs. Returns: false when the
// catalogue is refused.
bool Prepare(const StartUpWindows &windows)
{
    DataAccess = std::make_unique<catalogue::ADOclass>();
    Globals &globals = TheGlobals();
    globals.HelpFilePath = AppFile("Brandolet.hlp");
    RegisterFileTypes();
    globals.LanguageFilePath = LanguageFile(GetPreference("Language"));
    Run(windows.LoadMainWindow); // the first use of the main window creates it
    SetADOFields(*DataAccess);
    if (!CheckCatalogue())
        return false;
    ReadPreferences();
    Run(windows.ShowWebStyle, globals.WebStyle);
    for (std::size_t i = 0; i < FieldNames.size(); ++i)
        globals.LoadField[i] = GetFlagPreference(std::string("Load ").append(FieldNames[i]));
    return true;
}

// The regeneration at each start, which the user has chosen. When the folder is missing at this
// start, a box reports it, and the catalogue is shown as it is.
void RefreshAtStartUp(const StartUpWindows &windows)
{
    try {
        Run(windows.ListRefresh, false);
    } catch (const runtime::RuntimeError &error) {
        ShowRuntimeError(error);
    }
}

void BringUpMainWindow(const StartUpWindows &windows)
{
    platform::TheDesktop().SetPointer(platform::Pointer::Hourglass);
    platform::TheDesktop().DoEvents();
    if (GetFlagPreference("RefreshAtStartUp"))
        RefreshAtStartUp(windows);
    Run(windows.SizeMainWindow);
    Run(windows.BuildLanguageMenu, FindLanguages());
    Run(windows.LoadShellIcons);
    Run(windows.LoadTreeView, std::string_view());
    Run(windows.ArmSplashTimer);
    platform::TheDesktop().SetPointer(platform::Pointer::Normal);
    platform::TheDesktop().DoEvents();
}

} // namespace

void SetADOFields(catalogue::ADOclass &target)
{
    target.Reset();
    target.DirBase = GetAppPath() + runtime::PathSeparator;
    target.DataBaseName = "MP3s";
    target.TableName = "MP3s";
    target.TipoLectura = 1;
}

bool CheckCatalogue()
{
    const auto records =
        catalogue::Records(DataAccess->ExecuteSQL("SELECT * FROM Validations", catalogue::kDetect));
    if (records && records->IsOpen()) {
        const bool tooOld = IsVersionGreater(RequiredDBVersion, records->Text("Version"));
        return tooOld ? RefuseOldCatalogue() : true;
    }
    if (!DataAccess->Succeeded && DataAccess->ErrorMessage == kNotValidDataBase)
        return RefuseDamagedCatalogue();
    return RefuseOldCatalogue(WhyNotWritable());
}

void ReadPreferences()
{
    Globals &globals = TheGlobals();
    globals.InitialTVWidth = GetNumberPreference("Initial TV Width");
    globals.MP3Directory = GetPreference("MP3 Directory");
    globals.BackUpFiles = GetFlagPreference("Back Up Files");
    globals.UpdateDBAfterEditing = GetFlagPreference("Update DB after editing");
    globals.ShowLyricsAutomatically = GetFlagPreference("Show Lyrics automatically");
    globals.DeleteBeforeAppend = GetFlagPreference("Delete Before Append");
    globals.WebStyle = GetFlagPreference("WebStyle");
    globals.AutoCheckNewerVersion = GetFlagPreference("AutoCheckNewerVersion");
}

std::vector<std::string> FindLanguages()
{
    std::vector<std::string> names = LanguageFileNames();
    for (std::string &name : names)
        name.resize(name.size() - kLanguageExtension.size());
    return names;
}

void ShowRuntimeError(const runtime::RuntimeError &error)
{
    platform::TheDesktop().MessageBox("Run-time error '" + std::to_string(error.number) + "':\r\r" +
                                      error.description);
}

std::optional<int> Main(const std::vector<std::string> &elements, const StartUpWindows &windows)
{
    if (!Prepare(windows))
        return kRefused;
    Run(windows.ShowSplash);
    if (!elements.empty()) {
        return RunBatch(elements) ? 0 : kRowsLost;
    }
    BringUpMainWindow(windows);
    return std::nullopt;
}

int MainRegenerate(const std::string &folder, const StartUpWindows &windows)
{
    if (!Prepare(windows))
        return kRefused;
    return RunRegenerateJob(folder) ? 0 : kRowsLost;
}

} // namespace shell
