#include "online/version/versioninfo.h"

#include "browser/layout.h"
#include "catalogue/adoclass.h"
#include "online/fileinfo.h"
#include "online/version/versionfile.h"
#include "shell/apppath.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/version.h"

namespace online
{

namespace
{

constexpr std::string_view kSection = "VersionInfo";
constexpr int kStatusTop = 495;        // twips
constexpr int kNothingButtonTop = 700; // twips
constexpr int kLargeFont = 16;         // points
constexpr std::string_view kYouUsing = "The version you're using is:";
constexpr std::string_view kAvailable = "Last version available is:";

// The labels lblYouUsing and lblAvailable of the last two tools have no row here: they are not
// translated.
constexpr ui::Caption kCaptions[] = {
    {"", kSection, "VersionInfoCaption", "Version information"},
    {"frmWhatsNew", kSection, "SeeWhatsNew", "See what's new"},
    {"lblNote", kSection, "CheckTheVersionsThereShouldBeAtLeastOneNewer",
     "Check the versions, at least one app (or the database) should be upgraded."},
    {"lblYouUsing(0)", kSection, "TheVersionYouAreUsingIs", kYouUsing},
    {"lblAvailable(0)", kSection, "LastVersionAvailableIs", kAvailable},
    {"lblYouUsing(1)", kSection, "TheVersionYouAreUsingIs", kYouUsing},
    {"lblAvailable(1)", kSection, "LastVersionAvailableIs", kAvailable},
    {"lblYouUsing(2)", kSection, "TheVersionYouAreUsingIs", kYouUsing},
    {"lblAvailable(2)", kSection, "LastVersionAvailableIs", kAvailable},
    {"lblYouUsing(3)", kSection, "TheVersionYouAreUsingIs", kYouUsing},
    {"lblAvailable(3)", kSection, "LastVersionAvailableIs", kAvailable},
    {"lblDB(0)", kSection, "TheDatabasesDateYouAreUsingIs", "The database's date you're using is:"},
    {"lblDB(1)", kSection, "LastDatabaseAvailableIsFrom", "Last database available is from:"},
};

std::string NoNewerText()
{
    return shell::GetLanguageText("No newer version available.", "NoNewerVersionAvailable",
                                  "Versions");
}

std::string ProgramVersion(std::string_view between)
{
    return shell::VersionText(shell::kProgramVersion, between);
}

std::string Index(std::string_view name, int index)
{
    return std::string(name) + "(" + std::to_string(index) + ")";
}

} // namespace

const std::array<std::string_view, kTools> kToolFiles = {"Quenlin.exe",   "Dravicolt.exe",
                                                         "Ombrelane.exe", "Tessaroon.exe",
                                                         "Pelmont.exe",   "Reportolio.exe"};

namespace
{

// Positions from the window's design, in twips inside the window. The frames are in two columns;
// while the program waits for the answer, the window ends above the second row of frames.
constexpr int kInsideWidth = 10200;
constexpr int kColumns[] = {150, 5175};
constexpr int kFrameWidth = 4875, kFrameHeight = 1275;
constexpr int kPictureSize = 240;
constexpr int kRowTops[] = {1050, 2400, 3750, 5100};

ui::Rect FramePlace(int frame)
{
    return {kColumns[frame % 2], kRowTops[frame / 2], kFrameWidth, kFrameHeight};
}

// The tool that a frame is about; -1 for the frame of the database.
int ToolOfFrame(int frame)
{
    constexpr int kDatabaseFrame = 4;
    if (frame == kDatabaseFrame)
        return -1;
    return frame < kDatabaseFrame ? frame : frame - 1;
}

} // namespace

VersionInfoForm::VersionInfoForm(const DriveTimer &drive) : Form("frmVersionInfo", kCaptions)
{
    Add("Status", Status);
    for (int i = 0; i < kVersionFrames; ++i) {
        ui::Frame &frame = Frame[i];
        frame.SetPlace(FramePlace(i));
        Add(Index("Frame", i), frame);
        const int tool = ToolOfFrame(i);
        frame.SetCaption(tool < 0 ? "Database Version" : kToolFiles[tool]);
        ui::Label &above = tool < 0 ? lblDB[0] : lblYouUsing[tool];
        ui::Label &below = tool < 0 ? lblDB[1] : lblAvailable[tool];
        ui::Label &used = tool < 0 ? DBUsing : Using[tool];
        ui::Label &offered = tool < 0 ? DBUpdate : NewOne[tool];
        ui::Picture &onDisk = tool < 0 ? Image3 : ImgUsing[tool];
        ui::Picture &onWeb = tool < 0 ? Image4 : ImgAvailable[tool];
        onDisk.SetPlace({150, 300, kPictureSize, kPictureSize});
        onDisk.SetImage("hard");
        onWeb.SetPlace({150, 750, kPictureSize, kPictureSize});
        onWeb.SetImage("net");
        above.SetPlace({465, 300, 2910, 420});
        used.SetPlace({3450, 300, 1350, 420});
        below.SetPlace({465, 750, 2910, 420});
        offered.SetPlace({3450, 750, 1350, 420});
        const auto nameOf = [&](std::string_view array, std::string_view single, int index) {
            return tool < 0 && single.empty() ? Index("lblDB", index)
                   : tool < 0                 ? std::string(single)
                                              : Index(array, tool);
        };
        Add(nameOf("ImgUsing", "Image3", 0), onDisk, {.in = &frame});
        Add(nameOf("ImgAvailable", "Image4", 0), onWeb, {.in = &frame});
        Add(nameOf("lblYouUsing", "", 0), above, {.in = &frame});
        Add(nameOf("Using", "DBUsing", 0), used, {.in = &frame});
        Add(nameOf("lblAvailable", "", 1), below, {.in = &frame});
        Add(nameOf("NewOne", "DBUpdate", 0), offered, {.in = &frame});
        if (tool >= 0) {
            above.SetCaption(kYouUsing);
            below.SetCaption(kAvailable);
        }
    }
    frmWhatsNew.SetPlace({kColumns[1], kRowTops[3], kFrameWidth, kFrameHeight});
    Add("frmWhatsNew", frmWhatsNew);
    URL2Download.SetPlace({75, 390, kFrameWidth - 150, 600});
    Add("URL2Download", URL2Download, {.in = &frmWhatsNew});
    lblNote.SetPlace({150, 6525, kInsideWidth - 300, 600});
    Add("lblNote", lblNote);
    Status.SetPlace({150, kStatusTop, kInsideWidth - 300, 525});
    cmdAceptar.SetPlace({kInsideWidth - 1500, 7275, 1350, 420});
    cmdAceptar.SetCaption("&Ok");
    Add("cmdAceptar", cmdAceptar);
    acceptButton = cancelButton = &cmdAceptar;
    size.width = kInsideWidth;
    SetHeight(kVersionResultHeight);

    cmdAceptar.onClick = [this] { ui::Close(*this); };
    URL2Download.onClick = [this] { shell::OpenAddress(URL2Download.Caption(), "C:\\"); };
    Delayer.event = [this] {
        Delayer.SetEnabled(false);
        WebVrChk1.Start();
    };
    WebVrChk1.noNewerVersion = [this] { WebVrChk1_NoNewer(); };
    WebVrChk1.newerVersion = [this](const std::string &base, const std::string &text) {
        WebVrChk1_Newer(base, text);
    };
    WebVrChk1.error = [this](std::int32_t code) {
        if (code == -1 || code == -2)
            Status.SetCaption(shell::GetLanguageText("Couldn't connect or the file was not found.",
                                                     "CouldNotConnectOrFileNotFound", "Versions"));
    };
    if (drive)
        m_driven = drive(Delayer);
}

void VersionInfoForm::SetHeight(int twips)
{
    size.height = twips - browser::kFrameHeight;
    ui::Notify(changed);
}

void VersionInfoForm::CheckAppsVersions()
{
    Mostrar_Ocultar(false);
    const auto row = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM Validations", catalogue::kSelect));
    if (row != nullptr && row->IsOpen() && !row->AtEnd()) {
        URL2Check = row->Text("URL2Check");
        VersionCheck = row->Text("VersionCheck");
        DBCheck = row->Text("DBCheck");
        Version = row->Text("Version");
    }
    CheckVersion();
    Delayer.SetEnabled(true);
    if (!ShowIt)
        ui::Hide(*this);
}

void VersionInfoForm::CheckVersion()
{
    WebVrChk1.subject = WebVrChk::Subject::Program;
    WebVrChk1.version = ProgramVersion(".");
    WebVrChk1.address = URL2Check + VersionCheck;
    WebVrChk1.base = URL2Check;
    firstStage = true;
}

void VersionInfoForm::Mostrar_Ocultar(bool show)
{
    Frame[0].SetVisible(show);
    Frame[1].SetVisible(show);
    cmdAceptar.SetVisible(show);
    frmWhatsNew.SetVisible(show);
    Status.SetTop(kStatusTop);
    if (show) {
        if (Status.Caption() != NoNewerText())
            Status.SetCaption(shell::GetLanguageText("A newer version is available.",
                                                     "NewerVersionAvailable", "Versions"));
        SetHeight(kVersionResultHeight);
        return;
    }
    Status.SetCaption(shell::GetLanguageText("Trying to find an active connection to Internet...",
                                             "TryingToFindAnActiveConnection", "Versions"));
    SetHeight(kVersionWaitHeight);
}

void VersionInfoForm::WebVrChk1_NoNewer()
{
    if (firstStage) {
        WebVrChk1.subject = WebVrChk::Subject::Database;
        WebVrChk1.version = Version;
        WebVrChk1.address = URL2Check + DBCheck;
        firstStage = false;
        Delayer.SetEnabled(true);
        return;
    }
    ShowNothingNewer();
    if (!ShowIt && NoNewerVersion)
        NoNewerVersion();
}

void VersionInfoForm::ShowNothingNewer()
{
    Status.SetCaption(NoNewerText());
    cmdAceptar.SetTop(kNothingButtonTop);
    cmdAceptar.SetVisible(true);
    SetHeight(kVersionNothingHeight);
}

void VersionInfoForm::TakeVersions(const std::string &text)
{
    const VersionFile file = ParseVersionFile(text);
    for (const DatabaseLine &line : file.databases) {
        if (line.version == Version)
            DBUsing.SetCaption(line.date);
        DBUpdate.SetCaption(line.date);
    }
    for (std::size_t i = 0; i < file.tools.size() && i < Using.size(); ++i) {
        Using[i].SetCaption(FileVersion(shell::AppFile(kToolFiles[i])));
        NewOne[i].SetCaption(file.tools[i]);
    }
}

void VersionInfoForm::WebVrChk1_Newer(const std::string &base, const std::string &text)
{
    TakeVersions(text);
    if (!firstStage) {
        Status.SetCaption(
            shell::GetLanguageText("Brandolet is up to date, but there's a newer database.",
                                   "MP3IsUpdatedButNewerDatabase", "Versions"));
        Status.SetFontSize(kLargeFont);
    }
    bool differs = false;
    for (int i = 0; i < kTools && !differs; ++i)
        differs = Using[i].Caption() != NewOne[i].Caption();
    URL2Download.SetCaption(base + "whats_new.asp#" + ProgramVersion(""));
    frmWhatsNew.SetEnabled(!base.empty());
    URL2Download.SetEnabled(!base.empty());

    // Called last and from a copy: the owner may destroy the form in its handler.
    const auto none = NoNewerVersion;
    if (differs) {
        Mostrar_Ocultar(true);
        if (ShowIt)
            ui::ShowModal(*this);
        const auto event = ShowIt ? none : NewerVersion;
        if (event)
            event();
        return;
    }
    if (none)
        none();
    if (DBUpdate.Caption() == DBUsing.Caption()) {
        Mostrar_Ocultar(false);
        ShowNothingNewer();
        if (ShowIt)
            ui::ShowModal(*this);
    }
}

} // namespace online
