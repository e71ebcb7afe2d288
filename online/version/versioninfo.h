// online/version/versioninfo.h - frmVersionInfo: asks on the web whether there is a newer version
// of the program, of its sister tools or of the catalogue, and shows the result. Only the event for
// a newer version shows the window; any other result is not shown, also when the user started the
// check.
#pragma once

#include "online/version/webvrchk.h"
#include "ui/controls/form.h"
#include "ui/controls/frame.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace online
{

inline constexpr int kTools = 6;
inline constexpr int kVersionFrames = 7; // one for each tool, and number 4 for the database

// Heights of the window, places of its controls: twips.
inline constexpr int kVersionResultHeight = 8490;
inline constexpr int kVersionWaitHeight = 2200;
inline constexpr int kVersionNothingHeight = 1800;

// Makes the window system run a timer while the result exists.
using DriveTimer = std::function<std::shared_ptr<void>(ui::Timer &)>;

struct VersionInfoForm : ui::Form {
    explicit VersionInfoForm(const DriveTimer &drive);

    // --- From the one row of the table `Validations`.
    std::string URL2Check;    // base address of the web pages
    std::string VersionCheck; // name of the tools' version file
    std::string DBCheck;      // name of the database's version file
    std::string Version;      // of the catalogue in use

    bool firstStage = false; // the file of the tools is being checked, not that of the database
    bool ShowIt = false;     // the user started this check

    // --- Controls.
    std::array<ui::Frame, kVersionFrames> Frame;
    std::array<ui::Label, kTools> Using, NewOne; // version in use, last one available
    std::array<ui::Label, kTools> lblYouUsing, lblAvailable;
    ui::Label DBUsing, DBUpdate; // dates
    std::array<ui::Label, 2> lblDB;
    ui::Frame frmWhatsNew;
    ui::Button URL2Download; // shows the address; a click opens it
    ui::Label Status;
    std::array<ui::Picture, kTools> ImgUsing, ImgAvailable; // one beside each version
    ui::Picture Image3, Image4;                             // one beside each date
    ui::Label lblNote;
    ui::Button cmdAceptar;
    ui::Timer Delayer{250};
    WebVrChk WebVrChk1;

    // --- Events for the owner, who may destroy the form in each of them.
    std::function<void()> NoNewerVersion;
    std::function<void()> NewerVersion;

    // Does the whole check: reads the row of `Validations`, then starts the download a moment
    // later.
    void CheckAppsVersions();

    // Starts the download of the first stage.
    void CheckVersion();

    // Arranges the window for the result (true) or for the time of waiting (false).
    void Mostrar_Ocultar(bool show);

private:
    void WebVrChk1_NoNewer();
    void WebVrChk1_Newer(const std::string &base, const std::string &text);
    void TakeVersions(const std::string &text);
    void ShowNothingNewer();
    void SetHeight(int twips);

    std::shared_ptr<void> m_driven; // keeps Delayer running
};

// The name of each tool's program file in the program's folder.
extern const std::array<std::string_view, kTools> kToolFiles;

} // namespace online
