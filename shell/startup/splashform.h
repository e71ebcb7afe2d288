// shell/startup/splashform.h - frmSplash: one window in two roles, the splash with its progress
// line while the program starts, and the about box.
#pragma once

#include "ui/controls/form.h"

#include <functional>
#include <memory>
#include <string>

namespace shell
{

// Sizes in twips. The height alone shows which role the window has.
inline constexpr int kSplashWidth = 7485;
inline constexpr int kSplashHeight = 4980;
inline constexpr int kAboutHeight = 6015;
inline constexpr int kCloseItMs = 500;

struct SplashForm : ui::Form {
    // `showMainForm` runs when the window closes in the splash role. `showHistory`, `showLicences`:
    // what the buttons of the about box do; without a function the button is disabled.
    explicit SplashForm(std::function<void()> showMainForm, std::function<void()> showHistory = {},
                        std::function<void()> showLicences = {});

    // Sets the size and the appearance of the role: the about box when `about` is true, else the
    // splash. Only CloseIt closes the splash, while Escape closes the about box.
    void SetRole(bool about);

    // Shows the window in its role without modality, in the middle of the screen; as the splash it
    // then lets events run. Errors: kNonModalOverModal (401) while a modal window is open.
    void ShowSplash(bool about);

    ui::Picture imgLogo;
    ui::Label LabVers; // "LabVers(0)"
    ui::Frame About;   // what only the about box shows
    ui::Label lblProgrammed, Label2, lblMail, lblICQ, Label5;
    ui::Button lblEmail; // opens the support address
    ui::Button cmdLicences, cmdHistory, cmdOk;
    ui::Frame frmTranslation; // the credits of the language file; hidden when it has none
    ui::Label lblTranslatedBy, lblTranslator;
    ui::Timer CloseIt{kCloseItMs}; // closes the splash once it is enabled
    // The progress line is Globals::lblProgress.

private:
    void AddMembers();
    void Arrange();
    void Load();

    std::function<void()> m_showMainForm;
    int m_height = kSplashHeight; // of the role, in twips
};

// At the end of the program: closes the window, without showing the main window, and destroys it.
// Does nothing with a null pointer.
void EndSplash(std::unique_ptr<SplashForm> splash);

// "Ver.:1.6.9"
std::string VersionCaption(int major, int minor, int revision);

// The address that lblEmail opens: "mailto:" and the support address.
std::string SupportMailAddress();

// Form_Unload: shows the main window, but only when `height` is exactly that of the splash.
void UnloadSplash(int height, const std::function<void()> &showMainForm);

} // namespace shell
