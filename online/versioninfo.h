// online/versioninfo.h - frmVersionInfo: looks on the web whether a newer version of the program,
// of its sister tools or of the catalogue exists, and shows what it found. The window is shown by
// the newer-version event alone; on any other outcome a user who asked gets no sign.
#pragma once

#include "online/webvrchk.h"
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
inline constexpr int kVersionFrames = 7; // one per tool, and 4 for the database

// Heights of the window, places of its controls: twips.
inline constexpr int kVersionResultHeight = 8490;
inline constexpr int kVersionWaitHeight = 2200;
inline constexpr int kVersionNothingHeight = 1800;

// Has the window system drive a timer for as long as the result lives.
using DriveTimer = std::function<std::shared_ptr<void>(ui::Timer &)>;

struct VersionInfoForm : ui::Form {
    explicit VersionInfoForm(const DriveTimer &drive);

    // --- Of the one row of table `Validations`.
    std::string URL2Check;    // base address of the web pages
    std::string VersionCheck; // name of the tools' version file
    std::string DBCheck;      // name of the database's version file
    std::string Version;      // of the database in use

    bool firstStage = false; // the tools' file is being checked, not the database's
    bool ShowIt = false;     // the user asked for this check

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

    // --- Events towards the owner. Each may drop the form.
    std::function<void()> NoNewerVersion;
    std::function<void()> NewerVersion;

    // The whole check: captions, the row of `Validations`, then the fetch a moment later.
    void CheckAppsVersions();

    // Arms the control for the first stage.
    void CheckVersion();

    // Lays the window out for the result (true) or for the wait.
    void Mostrar_Ocultar(bool show);

private:
    void LookUpCaptions();
    void WebVrChk1_NoNewer();
    void WebVrChk1_Newer(const std::string &base, const std::string &text);
    void TakeVersions(const std::string &text);
    void ShowNothingNewer();
    void SetHeight(int twips);

    std::shared_ptr<void> m_driven; // Delayer's driver
};

// The name of each tool's file in the program's folder.
extern const std::array<std::string_view, kTools> kToolFiles;

} // namespace online
