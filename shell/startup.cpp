#include "shell/startup.h"

#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/batch.h"
#include "shell/filetypes.h"
#include "shell/globals.h"
#include "shell/regeneratejob.h"
#include "shell/settings.h"
#include "shell/version.h"

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
constexpr std::string_view kNotValidDataBase = "Not ValidDataBase"; // ADOclass's own words

platform::Desktop &TheDesktop()
{
    return *platform::TheMachine().desktop;
}

// A step of the windows, where there is one.
template <class... Arguments>
void Run(const std::function<void(Arguments...)> &step,
         const std::type_identity_t<Arguments> &...arguments)
{
    if (step)
        step(arguments...);
}

bool RefuseOldCatalogue()
{
    TheDesktop().MessageBox(kNewerCatalogueNeeded);
    return false;
}

bool RefuseDamagedCatalogue()
{
    const auto answer =
        TheDesktop().MessageBox(kCatalogueDamaged, platform::Buttons::YesNo, "Corrupted file");
    if (answer == platform::Answer::Yes)
        TheDesktop().OpenAddress(std::string(kDownloadPage), "C:\\");
    return false;
}

// Everything up to the preferences, which each way of running needs. False when the catalogue is
// refused.
bool Prepare(const StartUpWindows &windows)
{
    DataAccess = std::make_unique<catalogue::ADOclass>();
    Globals &globals = TheGlobals();
    globals.HelpFilePath = AppFile("Brandolet.hlp");
    RegisterFileTypes();
    globals.LanguageFilePath = AppFile(GetPreference("Language"));
    Run(windows.LoadMainWindow); // the first touch of the window is what makes it
    SetADOFields(*DataAccess);
    if (!CheckCatalogue())
        return false;
    ReadPreferences();
    Run(windows.ShowWebStyle, globals.WebStyle);
    for (std::size_t i = 0; i < FieldNames.size(); ++i)
        globals.LoadField[i] = GetFlagPreference(std::string("Load ").append(FieldNames[i]));
    return true;
}

void BringUpMainWindow(const StartUpWindows &windows)
{
    TheDesktop().SetPointer(platform::Pointer::Hourglass);
    TheDesktop().DoEvents();
    if (GetFlagPreference("RefreshAtStartUp"))
        Run(windows.ListRefresh, false);
    Run(windows.SizeMainWindow);
    Run(windows.BuildLanguageMenu, FindLanguages());
    Run(windows.LoadShellIcons);
    Run(windows.LoadTreeView, std::string_view());
    Run(windows.ArmSplashTimer);
    TheDesktop().SetPointer(platform::Pointer::Normal);
    TheDesktop().DoEvents();
}

} // namespace

void SetADOFields(catalogue::ADOclass &target)
{
    target.Reset();
    target.DirBase = GetAppPath() + PathSeparator;
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
    return RefuseOldCatalogue();
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
    constexpr std::string_view kExtension = ".qlt";
    std::vector<std::string> names;
    std::error_code unreadable; // a folder that cannot be listed has no languages to offer
    for (const auto &entry : std::filesystem::directory_iterator(GetAppPath(), unreadable)) {
        const std::string name = entry.path().filename().string();
        std::error_code vanished;
        if (runtime::EqualAscii(runtime::Right(name, kExtension.size()), kExtension) &&
            !entry.is_directory(vanished))
            names.push_back(name.substr(0, name.size() - kExtension.size()));
    }
    return names;
}

void ShowRuntimeError(const runtime::RuntimeError &error)
{
    TheDesktop().MessageBox("Run-time error '" + std::to_string(error.number) + "':\r\r" +
                            error.description);
}

std::optional<int> Main(std::string_view commandLine, const StartUpWindows &windows)
{
    if (!Prepare(windows))
        return kRefused;
    Run(windows.ShowSplash);
    if (!commandLine.empty()) {
        RunBatch(commandLine);
        return 0;
    }
    BringUpMainWindow(windows);
    return std::nullopt;
}

int MainRegenerate(const std::string &folder, const StartUpWindows &windows)
{
    if (!Prepare(windows))
        return kRefused;
    RunRegenerateJob(folder);
    return 0;
}

} // namespace shell
