#include "shell/startup/splash.h"

#include "shell/globals.h"
#include "shell/language.h"

namespace shell
{

SplashLook LookOfSplash(bool about)
{
    return {kSplashWidth, about ? kAboutHeight : kSplashHeight, !about, about};
}

std::string VersionCaption(int major, int minor, int revision)
{
    return "Ver.:" + std::to_string(major) + "." + std::to_string(minor) + "." +
           std::to_string(revision);
}

ui::Rect Centred(int width, int height, ui::Rect screen)
{
    return {screen.left + (screen.width - width) / 2, screen.top + (screen.height - height) / 2,
            width, height};
}

SplashTexts LoadSplashTexts()
{
    SplashTexts texts;
    texts.programmedBy = GetLanguageText("Programmed by", "ProgrammedBy", "Splash");
    texts.email = GetLanguageText("E-mail:", "Email", "Splash");
    texts.icq = GetLanguageText("ICQ:", "ICQ", "Splash");
    texts.historyButton = GetLanguageText("&History", "HistoryButton", "Splash");
    texts.licencesButton = GetLanguageText("&Licences", "LicencesButton", "Splash");
    texts.okButton = GetLanguageText("&Ok", "OkButton", "Splash");
    texts.translatedBy = GetLanguageText("", "TranslatedBy", "TranslationInfo");
    texts.title = GetLanguageText("", "Title", "TranslationInfo");
    texts.translator = GetLanguageText("", "Translator", "TranslationInfo");
    return texts;
}

std::string SupportMailAddress()
{
    return "mailto:" + std::string(kSupportAddress);
}

void UnloadSplash(int height, const std::function<void()> &showMainForm)
{
    if (height == kSplashHeight && showMainForm)
        showMainForm();
}

} // namespace shell
