// shell/startup/splash.h - the splash and about box without its window: roles, sizes, texts, its
// end.
#pragma once

#include "ui/twips.h"

#include <functional>
#include <string>

namespace shell
{

// Sizes in twips. The height alone says which role the window played.
inline constexpr int kSplashWidth = 7485;
inline constexpr int kSplashHeight = 4980;
inline constexpr int kAboutHeight = 6015;
inline constexpr int kCloseItMs = 500;

struct SplashLook {
    int width = kSplashWidth, height = kSplashHeight; // twips
    bool progressVisible = true;                      // lblProgress
    bool keyPreview = false;                          // Escape ends the window in the about role
};

// ShowSplash's look: true for the about box.
SplashLook LookOfSplash(bool about);

// "Ver.:1.6.9"
std::string VersionCaption(int major, int minor, int revision);

// The place that centres a window of this size on a screen.
ui::Rect Centred(int width, int height, ui::Rect screen);

// The texts of the window, from the language file.
struct SplashTexts {
    std::string programmedBy, email, icq, historyButton, licencesButton,
        okButton;                                // section "Splash"
    std::string translatedBy, title, translator; // section "TranslationInfo"; empty without a file
};
SplashTexts LoadSplashTexts();

// The address that a click on lblEmail opens: "mailto:" and the support address.
std::string SupportMailAddress();

// Form_Unload: brings the main window up, only when `height` is exactly that of the splash.
void UnloadSplash(int height, const std::function<void()> &showMainForm);

} // namespace shell
