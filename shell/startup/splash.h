// shell/startup/splash.h - the splash and about box without its widgets: roles, sizes, texts, and
// what happens when it closes.
#pragma once

#include "ui/twips.h"

#include <functional>
#include <string>

namespace shell
{

// Sizes in twips. The height alone shows which role the window has.
inline constexpr int kSplashWidth = 7485;
inline constexpr int kSplashHeight = 4980;
inline constexpr int kAboutHeight = 6015;
inline constexpr int kCloseItMs = 500;

struct SplashLook {
    int width = kSplashWidth, height = kSplashHeight; // twips
    bool progressVisible = true;                      // lblProgress
    bool keyPreview = false;                          // Escape closes the window in the about role
};

// The look of the window in its role: the about box when `about` is true.
SplashLook LookOfSplash(bool about);

// "Ver.:1.6.9"
std::string VersionCaption(int major, int minor, int revision);

// The place on the screen at which a window of this size is centred.
ui::Rect Centred(int width, int height, ui::Rect screen);

// The texts of the window, from the language file.
struct SplashTexts {
    std::string programmedBy, email, icq, historyButton, licencesButton,
        okButton; // section "Splash"
    std::string translatedBy, title,
        translator; // section "TranslationInfo"; empty without a language file
};
SplashTexts LoadSplashTexts();

// The address that a click on lblEmail opens: "mailto:" and the support address.
std::string SupportMailAddress();

// Form_Unload: shows the main window, but only when `height` is exactly that of the splash.
void UnloadSplash(int height, const std::function<void()> &showMainForm);

} // namespace shell
